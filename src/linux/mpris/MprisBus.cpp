#include "linux/mpris/MprisBus.h"

#include "base/RunLoop.h"
#include "linux/dbus/DBusValue.h"
#include "linux/dbus/WhenAnswered.h"
#include "linux/mpris/MprisNames.h"
#include "linux/mpris/MprisPlayer.h"

#include <QDBusConnectionInterface>

#include <algorithm>

Q_LOGGING_CATEGORY(mprisLog, "com.orvalen.pellar.mpris", QtWarningMsg)

namespace {

const QString namePrefix = QStringLiteral("org.mpris.MediaPlayer2.");
const QString busDaemon = QStringLiteral("org.freedesktop.DBus");
const QString daemonPath = QStringLiteral("/org/freedesktop/DBus");

constexpr double firstReconnectDelay = 0.5; // seconds; doubled after each failure
constexpr double longestReconnectDelay = 30;

} // namespace

MprisBus::MprisBus(RunLoop& runLoop, QString address)
    : _runLoop(runLoop)
    , _address(std::move(address))
    , _bus(QString())
{
    if (!connectToBus()) {
        qCWarning(mprisLog, "There is no session bus to find players on: %ls",
                  qUtf16Printable(_bus.lastError().message()));
        reconnect(firstReconnectDelay);
    }
}

MprisBus::~MprisBus()
{
    QDBusConnection::disconnectFromBus(_connectionName);
}

bool MprisBus::connectToBus()
{
    static int connections = 0;
    _connectionName = QStringLiteral("pellar-players-%1").arg(++connections);
    _bus = _address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, _connectionName)
                              : QDBusConnection::connectToBus(_address, _connectionName);
    if (!_bus.isConnected()) {
        return false;
    }
    _bus.connect(busDaemon, daemonPath, busDaemon, QStringLiteral("NameOwnerChanged"), this,
                 SLOT(nameOwnerChanged(QString, QString, QString)));
    _bus.connect(QString(), Mpris::objectPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                 QStringLiteral("PropertiesChanged"), this, SLOT(propertiesChanged(QDBusMessage)));
    _bus.connect(QString(), Mpris::objectPath, Mpris::playerInterface, QStringLiteral("Seeked"), this,
                 SLOT(seeked(QDBusMessage)));
    for (const char* signal : {"TrackListReplaced", "TrackAdded", "TrackRemoved", "TrackMetadataChanged"}) {
        _bus.connect(QString(), Mpris::objectPath, Mpris::trackListInterface, QString::fromLatin1(signal),
                     this, SLOT(trackListChanged(QDBusMessage)));
    }
    _bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(disconnected()));
    findPlayers();
    return true;
}

void MprisBus::reconnect(double delay)
{
    _runLoop.after(delay, this, [this, delay] {
        QDBusConnection::disconnectFromBus(_connectionName);
        if (!connectToBus()) {
            reconnect(std::min(delay * 2, longestReconnectDelay));
        }
    });
}

void MprisBus::findPlayers()
{
    const QDBusPendingReply<QStringList> all = _bus.interface()->asyncCall(QStringLiteral("ListNames"));
    whenAnswered(all, this, [this](const QDBusPendingReply<QStringList>& names) {
        for (const QString& name : names.isValid() ? names.value() : QStringList()) {
            if (name.startsWith(namePrefix)) {
                findOwner(name);
            }
        }
    });
}

void MprisBus::findOwner(const QString& name)
{
    const QDBusPendingReply<QString> question =
        _bus.interface()->asyncCall(QStringLiteral("GetNameOwner"), name);
    whenAnswered(question, this, [this, name](const QDBusPendingReply<QString>& owner) {
        if (owner.isValid()) {
            addName(name, owner.value());
        }
    });
}

void MprisBus::nameOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner)
{
    if (!name.startsWith(namePrefix)) {
        return;
    }
    if (!oldOwner.isEmpty()) {
        removeName(name, oldOwner);
    }
    if (!newOwner.isEmpty()) {
        addName(name, newOwner);
    }
}

void MprisBus::propertiesChanged(const QDBusMessage& signal)
{
    MprisPlayer* const player = withUniqueName(signal.service());
    const QVariantList arguments = signal.arguments();
    if (player == nullptr || arguments.size() < 3) {
        return;
    }
    const QString interface = arguments[0].toString();
    const bool isOfRoot = interface == Mpris::rootInterface;
    if (isOfRoot || interface == Mpris::trackListInterface) {
        player->showedLife();
    }
    if (interface == Mpris::trackListInterface) {
        player->trackList().changed();
    } else if (isOfRoot) {
        player->trackList().learn();
    } else if (interface == Mpris::playerInterface) {
        player->propertiesChanged(DBusValue::dictionary(arguments[1]).value_or(QVariantMap()),
                                  arguments[2].toStringList());
    }
}

void MprisBus::trackListChanged(const QDBusMessage& signal)
{
    if (MprisPlayer* const player = withUniqueName(signal.service())) {
        player->showedLife();
        player->trackList().changed();
    }
}

void MprisBus::seeked(const QDBusMessage& signal)
{
    MprisPlayer* const player = withUniqueName(signal.service());
    bool isNumber = false;
    const qlonglong position = signal.arguments().value(0).toLongLong(&isNumber);
    if (player != nullptr && isNumber) {
        player->seeked(position);
    }
}

void MprisBus::disconnected()
{
    qCWarning(mprisLog, "The session bus has gone; waiting for its return");
    const auto players = _players;
    for (MprisPlayer* const player : players) {
        remove(player);
    }
    reconnect(firstReconnectDelay);
}

void MprisBus::addName(const QString& name, const QString& owner)
{
    const QString suffix = name.mid(namePrefix.size());
    MprisPlayer* player = withUniqueName(owner);
    const bool isNew = player == nullptr;
    if (isNew) {
        player = new MprisPlayer(_bus, owner, _runLoop, this);
        _players.append(player);
        findProcess(player);
    }
    if (!player->suffixes.contains(suffix)) {
        player->suffixes.append(suffix);
    }
    if (!isNew) {
        player->showedLife();
    } else {
        Q_EMIT playerAdded(player);
    }
}

void MprisBus::findProcess(MprisPlayer* player)
{
    const QDBusPendingReply<uint> question =
        _bus.interface()->asyncCall(QStringLiteral("GetConnectionUnixProcessID"), player->uniqueName());
    whenAnswered(question, player, [player](const QDBusPendingReply<uint>& processId) {
        if (processId.isValid()) {
            player->processId = processId.value();
        }
    });
}

void MprisBus::removeName(const QString& name, const QString& owner)
{
    MprisPlayer* const player = withUniqueName(owner);
    if (player == nullptr) {
        return;
    }
    player->suffixes.removeAll(name.mid(namePrefix.size()));
    if (player->suffixes.isEmpty()) {
        remove(player);
    }
}

void MprisBus::remove(MprisPlayer* player)
{
    _players.removeAll(player);
    Q_EMIT playerRemoved(player);
    player->deleteLater();
}

MprisPlayer* MprisBus::withUniqueName(const QString& name) const
{
    const auto found = std::find_if(_players.begin(), _players.end(), [&name](const MprisPlayer* player) {
        return player->uniqueName() == name;
    });
    return found == _players.end() ? nullptr : *found;
}
