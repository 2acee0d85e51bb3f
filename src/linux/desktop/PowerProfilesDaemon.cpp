#include "linux/desktop/PowerProfilesDaemon.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QLoggingCategory>

#include <utility>

namespace {

Q_LOGGING_CATEGORY(powerLog, "com.orvalen.pellar.power")

const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString profileProperty = QStringLiteral("ActiveProfile");

} // namespace

PowerProfilesDaemon::PowerProfilesDaemon(QDBusConnection bus, QString interface, QString path)
    : _bus(std::move(bus))
    , _interface(std::move(interface))
    , _path(std::move(path))
    , _watcher(_interface, _bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { setOwner(owner); });
    QDBusMessage request = QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"),
                                                          busName, QStringLiteral("GetNameOwner"));
    request << _interface;
    call(request, &PowerProfilesDaemon::ownerAnswered);
}

PowerProfilesDaemon::~PowerProfilesDaemon() = default;

/// Asks; whatever was asked before is no longer waited for.
void PowerProfilesDaemon::call(const QDBusMessage& request, Answer answer)
{
    _pending = std::make_unique<QDBusPendingCallWatcher>(_bus.asyncCall(request));
    connect(_pending.get(), &QDBusPendingCallWatcher::finished, this,
            [this, answer](QDBusPendingCallWatcher* watcher) {
                _pending.release()->deleteLater();
                (this->*answer)(watcher->reply());
            });
}

void PowerProfilesDaemon::ownerAnswered(const QDBusMessage& reply)
{
    if (reply.type() == QDBusMessage::ReplyMessage) { // an error only says that nobody has the name
        setOwner(reply.arguments().value(0).toString());
    }
}

/// Follows the owner by its unique name: naming the service would have the bus start the daemon, and Qt ask
/// for the owner again and wait for the answer.
void PowerProfilesDaemon::setOwner(const QString& owner)
{
    const auto signalName = QStringLiteral("PropertiesChanged");
    const char* const slot = SLOT(propertiesChanged(QString, QVariantMap, QStringList));
    if (!_owner.isEmpty()) {
        _bus.disconnect(_owner, _path, properties, signalName, {_interface}, QString(), this, slot);
    }
    _owner = owner;
    _pending.reset();
    if (_owner.isEmpty()) {
        setPowerSaver(false);
        return;
    }
    _bus.connect(_owner, _path, properties, signalName, {_interface}, QString(), this, slot);
    requestProfile();
}

void PowerProfilesDaemon::requestProfile()
{
    QDBusMessage request = QDBusMessage::createMethodCall(_owner, _path, properties, QStringLiteral("Get"));
    request << _interface << profileProperty;
    call(request, &PowerProfilesDaemon::profileAnswered);
}

void PowerProfilesDaemon::profileAnswered(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage) {
        qCWarning(powerLog).noquote() << _interface << "does not tell its profile:" << reply.errorMessage();
        setPowerSaver(false);
        return;
    }
    setProfile(reply.arguments().value(0).value<QDBusVariant>().variant());
}

void PowerProfilesDaemon::propertiesChanged(const QString&, const QVariantMap& values,
                                            const QStringList& invalidated)
{
    if (values.contains(profileProperty)) {
        _pending.reset(); // its answer can only be older or the same
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
