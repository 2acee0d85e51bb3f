#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <functional>
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

    /// Every address, those of redirects too, has to be a secure one.
    bool isSecureOnly = false;

    /// Takes the body of a whole answer with a status of 200 to 299 piece by piece as it comes, in place of
    /// the reply's body, which stays empty. The call still fails if the answer is cut off or too long, and
    /// must not be destroyed from here.
    std::function<void(const QByteArray& piece)> receive = {};

    /// Whether a redirect from one address to another is followed: between web addresses only, never from
    /// https to http, and to another host only without a body or authorisation that were not meant for it.
    bool mayFollow(const QUrl& from, const QUrl& to) const;
};
