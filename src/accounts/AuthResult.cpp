#include "accounts/AuthResult.h"

#include "accounts/AccountsLog.h"

std::optional<AuthResult> authResult(const QJsonObject& message)
{
    constexpr qsizetype longestMessage = 500; // characters
    const QString type = message.value(QStringLiteral("type")).toString();
    if (type == QStringLiteral("success")) {
        const QString token = message.value(QStringLiteral("userToken")).toString();
        return token.isEmpty() ? AuthResult::error(QStringLiteral("empty user token"))
                               : AuthResult::success(token);
    }
    if (type == QStringLiteral("error")) {
        const QString text = message.value(QStringLiteral("message")).toString(QStringLiteral("unknown"));
        return AuthResult::error(withoutSecrets(text.left(longestMessage)));
    }
    return type == QStringLiteral("cancelled") ? std::optional(AuthResult::cancelled()) : std::nullopt;
}
