#include "linux/desktop/ApplicationService.h"

#include "linux/dbus/WhenAnswered.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.bus", QtWarningMsg)

constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;

} // namespace

const QString ApplicationService::busName = QStringLiteral("com.orvalen.pellar");
const QString ApplicationService::objectPath = QStringLiteral("/com/orvalen/pellar");
const QString ApplicationService::interface = QStringLiteral("org.freedesktop.Application");

ApplicationService::ApplicationService()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    new ApplicationAdaptor(*this); // belongs to this
    bus.registerObject(objectPath, this);
    const QDBusPendingReply<uint> name =
        bus.interface()->asyncCall(QStringLiteral("RequestName"), busName, doNotQueue);
    whenAnswered(name, this, [](const QDBusPendingReply<uint>& reply) {
        if (reply.isError() || reply.value() != primaryOwner) {
            qCWarning(log).noquote() << "the bus does not give this program the name" << busName;
        }
    });
}

ApplicationService::~ApplicationService()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        bus.interface()->asyncCall(QStringLiteral("ReleaseName"), busName);
    }
}

void ApplicationAdaptor::Activate(const QVariantMap& /*platformData*/)
{
    Q_EMIT _service.activated();
}

void ApplicationAdaptor::Open(const QStringList& /*addresses*/, const QVariantMap& /*platformData*/)
{
    Q_EMIT _service.activated();
}

void ApplicationAdaptor::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                        const QVariantMap& /*platformData*/)
{
    Q_EMIT _service.actionRequested(action);
}
