#include "linux/desktop/PowerProfilesDaemon.h"

#include "base/RunLoop.h"
#include "linux/dbus/WhenAnswered.h"

#include <QLoggingCategory>

#include <utility>

namespace {

Q_LOGGING_CATEGORY(powerLog, "com.orvalen.pellar.power", QtWarningMsg)

const QString profileProperty = QStringLiteral("ActiveProfile");

} // namespace

PowerProfilesDaemon::PowerProfilesDaemon(QDBusConnection bus, RunLoop& runLoop, QString interface,
                                         QString path)
    : _bus(std::move(bus))
    , _runLoop(runLoop)
    , _interface(std::move(interface))
    , _path(std::move(path))
    , _name(_bus, _interface)
{
    _bus.connect(QString(), _path, QLatin1String(PropertiesProxy::staticInterfaceName()),
                 QStringLiteral("PropertiesChanged"), {_interface}, QString(), this,
                 SLOT(propertiesChanged(QString, QVariantMap, QStringList, QDBusMessage)));
    connect(&_name, &BusName::ownerChanged, this, &PowerProfilesDaemon::setOwner);
}

void PowerProfilesDaemon::setOwner(const QString& owner)
{
    _properties.reset(); // which also drops a pending request
    _backoff.reset();
    if (owner.isEmpty()) {
        setPowerSaver(false);
        return;
    }
    _properties = std::make_unique<PropertiesProxy>(owner, _path, _bus);
    requestProfile();
}

void PowerProfilesDaemon::requestProfile()
{
    whenAnswered(_properties->Get(_interface, profileProperty), _properties.get(),
                 [this](const QDBusPendingReply<QDBusVariant>& reply) {
                     if (reply.isValid()) {
                         _backoff.reset();
                         setProfile(reply.value().variant());
                     } else {
                         setPowerSaver(false);
                         requestAgain(reply.error().message());
                     }
                 });
}

/// It may have taken its name before it can answer.
void PowerProfilesDaemon::requestAgain(const QString& failure)
{
    const auto delay = _backoff.next();
    if (delay == Backoff::first) {
        qCWarning(powerLog).noquote() << _interface << "does not tell its profile:" << failure;
    }
    if (delay) {
        _runLoop.after(*delay, _properties.get(), [this] { requestProfile(); });
    }
}

void PowerProfilesDaemon::propertiesChanged(const QString&, const QVariantMap& values,
                                            const QStringList& invalidated, const QDBusMessage& signal)
{
    if (_properties == nullptr || signal.service() != _properties->service()) {
        return;
    }
    if (values.contains(profileProperty)) {
        setProfile(values.value(profileProperty));
    } else if (invalidated.contains(profileProperty)) {
        requestProfile();
    }
}

void PowerProfilesDaemon::setProfile(const QVariant& profile)
{
    if (profile.typeId() != QMetaType::QString) {
        qCWarning(powerLog).noquote() << _interface << "has a profile of type" << profile.typeName();
    }
    setPowerSaver(profile.typeId() == QMetaType::QString &&
                  profile.toString() == QLatin1String("power-saver"));
}

void PowerProfilesDaemon::setPowerSaver(bool isPowerSaver)
{
    if (isPowerSaver != _isPowerSaver) {
        _isPowerSaver = isPowerSaver;
        Q_EMIT changed();
    }
}
