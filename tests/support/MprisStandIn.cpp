#include "support/MprisStandIn.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace {

const QString namePrefix = QStringLiteral("org.mpris.MediaPlayer2.");
const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QDBusConnection connection(const QString& address)
{
    static int count = 0;
    const QString name = QStringLiteral("stand-in-%1").arg(++count);
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                             : QDBusConnection::connectToBus(address, name);
}

QString callText(const QDBusMessage& message)
{
    QStringList words = {message.member()};
    const auto arguments = message.arguments();
    for (const QVariant& argument : arguments) {
        words.append(argument.metaType() == QMetaType::fromType<QDBusObjectPath>()
                         ? argument.value<QDBusObjectPath>().path()
                         : argument.toString());
    }
    return words.join(u' ');
}

} // namespace

MprisStandIn::MprisStandIn(const QString& suffix, const QString& address) : _bus(connection(address))
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    _properties = {{QStringLiteral("PlaybackStatus"), QStringLiteral("Stopped")},
                   {QStringLiteral("Rate"), 1.0},
                   {QStringLiteral("Metadata"), QVariantMap()},
                   {QStringLiteral("Position"), QVariant::fromValue(qlonglong(0))},
                   {QStringLiteral("CanControl"), true},
                   {QStringLiteral("CanPlay"), true}};
    _isRegistered = _bus.registerVirtualObject(objectPath, this) && _bus.registerService(namePrefix + suffix);
}

MprisStandIn::~MprisStandIn()
{
    QDBusConnection::disconnectFromBus(_bus.name());
}

void MprisStandIn::addName(const QString& suffix)
{
    _bus.registerService(namePrefix + suffix);
}

void MprisStandIn::change(const QVariantMap& properties)
{
    set(properties);
    auto signal =
        QDBusMessage::createSignal(objectPath, propertiesInterface, QStringLiteral("PropertiesChanged"));
    signal.setArguments({playerInterface, properties, QStringList()});
    _bus.send(signal);
}

void MprisStandIn::invalidate(const QString& property)
{
    auto signal =
        QDBusMessage::createSignal(objectPath, propertiesInterface, QStringLiteral("PropertiesChanged"));
    signal.setArguments({playerInterface, QVariantMap(), QStringList{property}});
    _bus.send(signal);
}

void MprisStandIn::seek(qlonglong microseconds)
{
    set({{QStringLiteral("Position"), QVariant::fromValue(microseconds)}});
    auto signal = QDBusMessage::createSignal(objectPath, playerInterface, QStringLiteral("Seeked"));
    signal.setArguments({QVariant::fromValue(microseconds)});
    _bus.send(signal);
}

void MprisStandIn::setTracks(const QList<QVariantMap>& tracks)
{
    QList<QDBusObjectPath> paths;
    for (const QVariantMap& track : tracks) {
        paths.append(track[QStringLiteral("mpris:trackid")].value<QDBusObjectPath>());
    }
    _tracks = tracks;
    set({{QStringLiteral("HasTrackList"), true}, {QStringLiteral("Tracks"), QVariant::fromValue(paths)}});
    auto signal = QDBusMessage::createSignal(objectPath, QStringLiteral("org.mpris.MediaPlayer2.TrackList"),
                                             QStringLiteral("TrackListReplaced"));
    signal.setArguments(
        {QVariant::fromValue(paths), QVariant::fromValue(QDBusObjectPath(QStringLiteral("/")))});
    _bus.send(signal);
}

QVariantMap MprisStandIn::metadata(const QString& id, const QString& title, const QString& artist,
                                   const QString& album, double seconds)
{
    return {{QStringLiteral("mpris:trackid"), QVariant::fromValue(QDBusObjectPath(id))},
            {QStringLiteral("mpris:length"), QVariant::fromValue(qlonglong(seconds * 1e6))},
            {QStringLiteral("xesam:title"), title},
            {QStringLiteral("xesam:artist"), QStringList{artist}},
            {QStringLiteral("xesam:album"), album}};
}

QVariantMap MprisStandIn::playing(const QVariantMap& metadata)
{
    return {{QStringLiteral("PlaybackStatus"), QStringLiteral("Playing")},
            {QStringLiteral("Metadata"), metadata}};
}

QString MprisStandIn::introspect(const QString&) const
{
    return {};
}

bool MprisStandIn::handleMessage(const QDBusMessage& message, const QDBusConnection& bus)
{
    if (isMute) {
        message.setDelayedReply(true);
        return true;
    }
    if (isRefusing) {
        bus.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")));
        return true;
    }
    if (message.interface() == propertiesInterface) {
        const QVariant value = answer(message);
        bus.send(value.isValid()
                     ? message.createReply(value)
                     : message.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("no")));
        return true;
    }
    if (message.member() == QStringLiteral("GetTracksMetadata")) {
        bus.send(message.createReply(QVariant::fromValue(_tracks)));
        return true;
    }
    calls.append(callText(message));
    bus.send(message.createReply());
    if (obeysTransport) {
        obey(message);
    }
    return true;
}

QVariant MprisStandIn::answer(const QDBusMessage& message)
{
    if (message.member() == QStringLiteral("GetAll")) {
        return _properties;
    }
    const QVariant value = _properties.value(message.arguments().value(1).toString());
    return value.isValid() ? QVariant::fromValue(QDBusVariant(value)) : QVariant();
}

void MprisStandIn::obey(const QDBusMessage& message)
{
    const QString status = QStringLiteral("PlaybackStatus");
    const QString playing = QStringLiteral("Playing");
    const QString paused = QStringLiteral("Paused");
    const QString member = message.member();
    if (member == QStringLiteral("PlayPause")) {
        change({{status, property(status) == playing ? paused : playing}});
    } else if (member == QStringLiteral("Pause")) {
        change({{status, paused}});
    } else if (member == QStringLiteral("Play")) {
        change({{status, playing}});
    } else if (member == QStringLiteral("SetPosition")) {
        goTo(message.arguments().value(1).toLongLong());
    } else if (member == QStringLiteral("Seek")) {
        goTo(property(QStringLiteral("Position")).toLongLong() + message.arguments().value(0).toLongLong());
    }
}

void MprisStandIn::goTo(qlonglong microseconds)
{
    if (announcesSeeks) {
        seek(microseconds);
    } else {
        set({{QStringLiteral("Position"), QVariant::fromValue(microseconds)}});
    }
}
