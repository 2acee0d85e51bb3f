#include "base/HttpRequest.h"

#include "base/WebAddress.h"

#include <algorithm>

bool HttpRequest::mayFollow(const QUrl& from, const QUrl& to) const
{
    if (!followsRedirects || !isWebAddress(to) || (isSecureOnly && !isSecureAddress(to))) {
        return false;
    }
    if (from.scheme() == QStringLiteral("https") && to.scheme() != from.scheme()) {
        return false;
    }
    if (from.authority() == to.authority()) {
        return true;
    }
    const bool isAuthorized = std::any_of(headers.begin(), headers.end(), [](const auto& header) {
        return header.first.compare("Authorization", Qt::CaseInsensitive) == 0;
    });
    return method == Method::get && !isAuthorized;
}
