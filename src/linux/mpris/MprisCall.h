#pragma once

#include <QVariantList>

#include <functional>

class QDBusConnection;
class QDBusMessage;
class QObject;

/// One method call to a player on the bus.
struct MprisCall {
    using Answer = std::function<void(const QDBusMessage& reply)>;

    QString player; ///< its unique name
    QString interface;
    QString member;
    QVariantList arguments;
    int timeLimit = 2000; ///< milliseconds

    /// Sends it and returns at once. The answer, a failure too, comes later, unless `context` is gone by
    /// then.
    void send(const QDBusConnection& bus, QObject* context, Answer answer) const;
};
