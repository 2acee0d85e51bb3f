#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <utility>

/// What is asked of a web service.
struct HttpRequest {
    enum class Method { get, post };

    QUrl url; ///< http or https; anything else fails
    Method method = Method::get;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;                 ///< of a post
    bool followsRedirects = true;    ///< false for what carries a secret: a redirect fails then
    double timeout = 15;             ///< seconds, above 0, for all of it, redirects included
    qsizetype byteLimit = 4'194'304; ///< of the answer's body, decompressed; a longer one fails

    /// Whether a redirect from one address to another is followed: between web addresses only, never from
    /// https to http, and to another host only without a body or authorisation that were not meant for it.
    bool mayFollow(const QUrl& from, const QUrl& to) const;
};
