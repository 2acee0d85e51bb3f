#pragma once

#include "support/BusStandIn.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>

/// A player of our own on a bus: answers as the real ones do, remembers what it was told to do, and
/// misbehaves where a test wants it to.
class MprisStandIn : public BusStandIn
{
public:
    /// Has the name "org.mpris.MediaPlayer2." + suffix on the bus at `address` (the session bus if empty).
    explicit MprisStandIn(const QString& suffix, const QString& address = {})
        : BusStandIn(u"/org/mpris/MediaPlayer2"_s, address)
    {
        qDBusRegisterMetaType<QList<QVariantMap>>();
        set({{status, u"Stopped"_s},
             {u"Rate"_s, 1.0},
             {u"Metadata"_s, QVariantMap()},
             {position, QVariant::fromValue(qlonglong(0))},
             {u"CanControl"_s, true},
             {u"CanPlay"_s, true}});
        addName(suffix);
    }

    /// Also owns another name.
    void addName(const QString& suffix) { own(u"org.mpris.MediaPlayer2."_s + suffix); }

    /// Changes properties of the player interface and tells everybody.
    void change(const QVariantMap& properties)
    {
        set(properties);
        announce(playerInterface, properties);
    }

    /// Tells that a property is no longer valid without telling its value.
    void invalidate(const QString& property) { announce(playerInterface, {}, {property}); }

    /// Says that the position is now this, in microseconds, and tells everybody.
    void seek(qlonglong microseconds)
    {
        set({{position, microseconds}});
        emitSignal(playerInterface, u"Seeked"_s, {microseconds});
    }

    static QVariantMap metadata(const QString& id, const QString& title, const QString& artist,
                                const QString& album, double seconds)
    {
        return {{u"mpris:trackid"_s, QVariant::fromValue(QDBusObjectPath(id))},
                {u"mpris:length"_s, QVariant::fromValue(qlonglong(seconds * 1e6))},
                {u"xesam:title"_s, title},
                {u"xesam:artist"_s, QStringList{artist}},
                {u"xesam:album"_s, album}};
    }
    static QVariantMap playing(const QVariantMap& metadata)
    {
        return {{status, u"Playing"_s}, {u"Metadata"_s, metadata}};
    }

    /// Has a track list from now on, and tells everybody.
    void setTracks(const QList<QVariantMap>& tracks)
    {
        QList<QDBusObjectPath> paths;
        for (const QVariantMap& track : tracks) {
            paths.append(track[u"mpris:trackid"_s].value<QDBusObjectPath>());
        }
        _tracks = tracks;
        set({{u"HasTrackList"_s, true}, {u"Tracks"_s, QVariant::fromValue(paths)}});
        announceTracks();
    }

    /// Tells that the track list is another one.
    void announceTracks()
    {
        const QVariant current = QVariant::fromValue(QDBusObjectPath(u"/"_s));
        emitSignal(u"org.mpris.MediaPlayer2.TrackList"_s, u"TrackListReplaced"_s,
                   {property(u"Tracks"_s), current});
    }

    /// Every method call so far, as "PlayPause" or "SetPosition /t/1 42500000".
    QStringList calls;

    bool obeysTransport = true; ///< PlayPause, Pause, Play and the seeks have their effect

protected:
    std::optional<QVariantList> perform(const QDBusMessage& call) override
    {
        if (call.member() == u"GetTracksMetadata"_s) {
            return QVariantList{QVariant::fromValue(_tracks)};
        }
        QStringList words = {call.member()};
        const auto arguments = call.arguments();
        for (const QVariant& argument : arguments) {
            words << (argument.canConvert<QDBusObjectPath>() ? argument.value<QDBusObjectPath>().path()
                                                             : argument.toString());
        }
        calls << words.join(u' ');
        if (obeysTransport) {
            obey(call.member(), arguments);
        }
        return QVariantList();
    }

private:
    void obey(const QString& command, const QVariantList& arguments)
    {
        if (command == u"SetPosition"_s) {
            seek(arguments.value(1).toLongLong());
        } else if (command == u"Seek"_s) {
            seek(property(position).toLongLong() + arguments.value(0).toLongLong());
        } else if (command.startsWith(u'P') && command != u"Previous"_s) {
            const bool toggles = command == u"PlayPause"_s;
            const bool plays = toggles ? property(status) != u"Playing"_s : command == u"Play"_s;
            change({{status, plays ? u"Playing"_s : u"Paused"_s}});
        }
    }

    static inline const QString playerInterface = u"org.mpris.MediaPlayer2.Player"_s;
    static inline const QString status = u"PlaybackStatus"_s;
    static inline const QString position = u"Position"_s;
    QList<QVariantMap> _tracks;
};
