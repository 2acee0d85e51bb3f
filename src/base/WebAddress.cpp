#include "base/WebAddress.h"

#include <QHostAddress>

namespace {

QString encoded(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

} // namespace

std::optional<QUrl> webAddress(const QString& service, const QString& path, const QueryItems& items)
{
    QStringList query;
    for (const auto& [name, value] : items) {
        query << encoded(name) + u'=' + encoded(value);
    }
    const QString separator = query.isEmpty() ? QString() : QStringLiteral("?");
    const QUrl address(service + path + separator + query.join(u'&'), QUrl::StrictMode);
    return isWebAddress(address) ? std::optional(address) : std::nullopt;
}

bool isWebAddress(const QUrl& address)
{
    const QString scheme = address.scheme();
    return address.isValid() && !address.host().isEmpty() &&
           (scheme == QStringLiteral("http") || scheme == QStringLiteral("https"));
}

bool isSecureAddress(const QUrl& address)
{
    const bool staysHere = QHostAddress(address.host()).isLoopback();
    return isWebAddress(address) && (address.scheme() == QStringLiteral("https") || staysHere);
}
