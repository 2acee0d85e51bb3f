#pragma once

#include "linux/dbus/Backoff.h"
#include "linux/mpris/MprisTrack.h"

#include <MprisTrackListProxy.h>
#include <PropertiesProxy.h>
#include <QList>
#include <QObject>

class RunLoop;

/// A mirror of the track list of one MPRIS player, kept current by its signals. Players without one, which
/// are most, have an empty list.
class MprisTrackList : public QObject
{
    Q_OBJECT

public:
    /// How many tracks are mirrored at most, from the beginning of the list.
    static constexpr qsizetype mostTracks = 2000;

    MprisTrackList(const QDBusConnection& bus, const QString& uniqueName, RunLoop& runLoop);

    const QList<MprisTrack>& tracks() const { return _tracks; }

    /// Whether a track of this title and artist is among them.
    bool contains(const MprisTrack& track) const;

    /// Has the player play one of its tracks.
    void goTo(const MprisTrack& track);

    /// Asks whether the player has a track list; if it has come, for the tracks.
    void learn();

    /// What the bus brings: the list, or something in it, is another one. A burst is answered once.
    void changed();

private:
    void fetch();
    void fetchTracks(QList<QDBusObjectPath> wanted);
    void learnAgain();
    void fetchAgain(const QString& failure);

    RunLoop& _runLoop;
    MprisTrackListProxy _proxy;
    PropertiesProxy _properties;
    QList<MprisTrack> _tracks;
    Backoff _backoff;
    bool _exists = false;
    bool _isFetchScheduled = false;
    int _round = 0; ///< answers to earlier questions do not count
};
