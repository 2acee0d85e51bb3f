#pragma once

#include <QByteArray>
#include <QString>

/// Proof of who asks, for a client that can keep no secret of its own: it sends the challenge ahead and shows
/// with the verifier that it was the one.
namespace Pkce {

/// 64 characters, each drawn by the system's random source from the letters, the digits and "-._~".
QString codeVerifier();

/// The verifier's SHA-256 in base64url without padding: 43 characters.
QString codeChallenge(const QString& codeVerifier);

} // namespace Pkce

/// Base64 with "-" and "_", without padding.
QString base64Url(const QByteArray& bytes);
