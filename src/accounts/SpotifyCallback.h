#pragma once

#include "base/WebAddress.h"

#include <QByteArray>

#include <optional>

/// What the browser brings back from Spotify.
struct SpotifyCallback {
    QString path;
    std::optional<QString> code; ///< none when there is none, or an empty one
};

/// Reads a request line, "GET /path?code=… HTTP/1.1".
SpotifyCallback parseCallback(const QByteArray& requestLine);

/// The whole answer: a page that tells the user whether it worked.
QByteArray callbackReply(bool isConnected);

/// Key and value pairs for the body of a request, as the token service takes them: what may stand in the
/// query of an address stays as it is.
QByteArray formEncode(const QueryItems& items);
