#include "linux/dbus/BusName.h"

#include "linux/dbus/WhenAnswered.h"

#include <QDBusConnectionInterface>

BusName::BusName(QDBusConnection bus, QString name)
    : _bus(std::move(bus))
    , _name(std::move(name))
    , _watcher(_name, _bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { Q_EMIT ownerChanged(owner); });
    findOwner();
}

void BusName::start()
{
    if (_bus.isConnected()) {
        _bus.interface()->asyncCall(QStringLiteral("StartServiceByName"), _name, 0U);
    }
}

void BusName::findOwner()
{
    if (!_bus.isConnected()) {
        return;
    }
    const QDBusPendingReply<QString> owner =
        _bus.interface()->asyncCall(QStringLiteral("GetNameOwner"), _name);
    whenAnswered(owner, this, [this](const QDBusPendingReply<QString>& reply) {
        if (reply.isValid()) { // an error only says that nobody has the name
            Q_EMIT ownerChanged(reply.value());
        }
    });
}
