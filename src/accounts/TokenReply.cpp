#include "accounts/TokenReply.h"

#include <QJsonDocument>

#include <algorithm>

std::optional<QJsonObject> tokenReplyObject(const HttpReply& reply)
{
    const QJsonDocument document = QJsonDocument::fromJson(reply.body);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

std::optional<QString> tokenOf(const QJsonObject& reply, const QString& name)
{
    const QString token = reply.value(name).toString();
    const bool isToken = !token.isEmpty() && std::all_of(token.begin(), token.end(),
                                                         [](QChar c) { return c > u' ' && c < u'\x7f'; });
    return isToken ? std::optional(token) : std::nullopt;
}

QString tokenFailure(const HttpReply& reply)
{
    constexpr qsizetype longestCode = 40; // of the errors that token services have
    if (reply.hasFailed()) {
        return reply.failure;
    }
    QString text = QStringLiteral("status=%1").arg(reply.status);
    const auto object = tokenReplyObject(reply);
    const QString error = object ? object->value(QStringLiteral("error")).toString() : QString();
    const bool isCode = error.size() <= longestCode && std::all_of(error.begin(), error.end(), [](QChar c) {
                            return c == u'_' || (c >= u'a' && c <= u'z');
                        });
    if (!error.isEmpty() && isCode) {
        text += QStringLiteral(" error=") + error;
    }
    return text;
}
