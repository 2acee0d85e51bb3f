#include "linux/desktop/RunningCopy.h"

#include "linux/desktop/ApplicationService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QThread>

namespace {

const QString noOwner = QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");

constexpr int patience = 5000;   // milliseconds
constexpr int pollInterval = 50; // milliseconds

QDBusMessage message(const QString& action)
{
    const QString method = action.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("ActivateAction");
    QDBusMessage call = QDBusMessage::createMethodCall(
        ApplicationService::busName, ApplicationService::objectPath, ApplicationService::interface, method);
    call.setAutoStartService(false);
    if (action.isEmpty()) {
        call << QVariantMap();
    } else {
        call << action << QVariantList() << QVariantMap();
    }
    return call;
}

} // namespace

bool RunningCopy::request(const QString& action)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QDBusMessage call = message(action);
    for (const QDeadlineTimer end(patience); bus.isConnected() && !end.hasExpired();) {
        const QDBusMessage reply = bus.call(call, QDBus::Block, patience);
        if (reply.type() == QDBusMessage::ReplyMessage) {
            return true;
        }
        if (reply.errorName() != noOwner && QDBusError(reply).type() != QDBusError::ServiceUnknown) {
            return false;
        }
        QThread::msleep(pollInterval);
    }
    return false;
}
