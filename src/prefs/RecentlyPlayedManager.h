#pragma once

#include "prefs/PlayedTrack.h"

#include <QObject>
#include <QProperty>

class RunLoop;
class UserDefaults;

/// The last twelve tracks that were played.
class RecentlyPlayedManager : public QObject
{
    Q_OBJECT

public:
    /// Starts empty when what is stored cannot be read, and leaves that as it is until the first change.
    RecentlyPlayedManager(UserDefaults& defaults, const RunLoop& clock);
    static RecentlyPlayedManager& shared();

    /// Newest first.
    QList<PlayedTrack> tracks() const { return _tracks; }

    /// Puts a track in front, played now, unless it is there already: the same title by the same artist.
    /// A title that is empty or says that nothing plays is ignored.
    void record(const QString& title, const QString& artist, const QString& album, const QString& source);
    void clear();

private:
    void setTracks(const QList<PlayedTrack>& tracks);

    UserDefaults& _defaults;
    const RunLoop& _clock;
    QProperty<QList<PlayedTrack>> _tracks;
};
