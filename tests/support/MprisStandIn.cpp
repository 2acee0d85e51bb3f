#include "support/MprisStandIn.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>

namespace {

const QString namePrefix = QStringLiteral("org.mpris.MediaPlayer2.");
const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");

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

MprisStandIn::MprisStandIn(const QString& suffix, const QString& address) : BusStandIn(objectPath, address)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    set({{QStringLiteral("PlaybackStatus"), QStringLiteral("Stopped")},
         {QStringLiteral("Rate"), 1.0},
         {QStringLiteral("Metadata"), QVariantMap()},
         {QStringLiteral("Position"), QVariant::fromValue(qlonglong(0))},
         {QStringLiteral("CanControl"), true},
         {QStringLiteral("CanPlay"), true}});
    addName(suffix);
}

void MprisStandIn::addName(const QString& suffix)
{
    own(namePrefix + suffix);
}

void MprisStandIn::change(const QVariantMap& properties)
{
    set(properties);
    announce(playerInterface, properties);
}

void MprisStandIn::invalidate(const QString& property)
{
    announce(playerInterface, {}, {property});
}

void MprisStandIn::seek(qlonglong microseconds)
{
    set({{QStringLiteral("Position"), microseconds}});
    emitSignal(playerInterface, QStringLiteral("Seeked"), {microseconds});
}

void MprisStandIn::setTracks(const QList<QVariantMap>& tracks)
{
    QList<QDBusObjectPath> paths;
    for (const QVariantMap& track : tracks) {
        paths.append(track[QStringLiteral("mpris:trackid")].value<QDBusObjectPath>());
    }
    _tracks = tracks;
    set({{QStringLiteral("HasTrackList"), true}, {QStringLiteral("Tracks"), QVariant::fromValue(paths)}});
    announceTracks();
}

void MprisStandIn::announceTracks()
{
    emitSignal(
        QStringLiteral("org.mpris.MediaPlayer2.TrackList"), QStringLiteral("TrackListReplaced"),
        {property(QStringLiteral("Tracks")), QVariant::fromValue(QDBusObjectPath(QStringLiteral("/")))});
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

std::optional<QVariantList> MprisStandIn::perform(const QDBusMessage& call)
{
    if (call.member() == QStringLiteral("GetTracksMetadata")) {
        return QVariantList{QVariant::fromValue(_tracks)};
    }
    calls.append(callText(call));
    if (obeysTransport) {
        obey(call);
    }
    return QVariantList();
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
