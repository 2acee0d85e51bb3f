#pragma once

#include "base/HttpCall.h"

#include <QJsonObject>

/// The object that a token service has answered with, whatever the status; none when it is something else.
std::optional<QJsonObject> tokenReplyObject(const HttpReply& reply);

/// The token of this name: printable characters without a space, as they can stand in a header.
std::optional<QString> tokenOf(const QJsonObject& reply, const QString& name);

/// Why there is no token in a reply, without anything secret: "status=400 error=invalid_grant".
QString tokenFailure(const HttpReply& reply);
