#pragma once

#include "base/Date.h"

#include <QString>

#include <variant>

/// Signs developer tokens for Apple Music: JSON Web Tokens of the algorithm ES256.
namespace AppleMusicJWT {

enum class SigningError {
    missingP8File, ///< the key file is absent or unreadable
    malformedP8,   ///< the text is no PEM of a P-256 private key
    signingFailed,
    base64Failed ///< a part could not be encoded
};

/// The error's name, for the log.
QString name(SigningError error);

/// A token that is good for `ttlSeconds` (whole seconds) from `now` on. `pem` is a private key without a
/// password.
std::variant<QString, SigningError> sign(const QString& pem, const QString& keyID, const QString& teamID,
                                         double ttlSeconds, Date now);

} // namespace AppleMusicJWT
