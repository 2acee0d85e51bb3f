#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

/// How a sign-in at Apple Music ended.
struct AuthResult {
    enum class Kind { success, error, cancelled };

    static AuthResult success(const QString& token) { return {Kind::success, token}; }
    static AuthResult error(const QString& message) { return {Kind::error, message}; }
    static AuthResult cancelled() { return {Kind::cancelled, {}}; }

    Kind kind = Kind::cancelled;
    QString text; ///< the user token of a success, the message of an error

    friend bool operator==(const AuthResult&, const AuthResult&) = default;
};

/// The outcome that the sign-in page tells in a message; none when it tells of something else.
std::optional<AuthResult> authResult(const QJsonObject& message);
