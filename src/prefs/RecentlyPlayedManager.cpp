#include "prefs/RecentlyPlayedManager.h"

#include "base/RunLoop.h"
#include "platform/Platform.h"
#include "prefs/StoredList.h"

namespace {

const QString tracksKey = QStringLiteral("pellar.recentlyPlayed.v1");

constexpr qsizetype mostTracks = 12;

} // namespace

RecentlyPlayedManager::RecentlyPlayedManager(UserDefaults& defaults, const RunLoop& clock)
    : _defaults(defaults)
    , _clock(clock)
{
    _tracks = readStored(defaults, tracksKey, QList<PlayedTrack>()).mid(0, mostTracks);
}

RecentlyPlayedManager& RecentlyPlayedManager::shared()
{
    static auto* const instance =
        new RecentlyPlayedManager(UserDefaults::standard(), Platform::current().runLoop);
    return *instance;
}

void RecentlyPlayedManager::record(const QString& title, const QString& artist, const QString& album,
                                   const QString& source)
{
    QList<PlayedTrack> tracks = _tracks;
    const bool isFirstAlready =
        !tracks.isEmpty() && tracks.first().title == title && tracks.first().artist == artist;
    if (title.isEmpty() || title == QStringLiteral("Not Playing") || isFirstAlready) {
        return;
    }
    tracks.prepend({title, artist, album, _clock.now(), source});
    setTracks(tracks.mid(0, mostTracks));
}

void RecentlyPlayedManager::clear()
{
    setTracks({});
}

void RecentlyPlayedManager::setTracks(const QList<PlayedTrack>& tracks)
{
    _defaults.setObject(tracksKey, StoredForm<QList<PlayedTrack>>::of(tracks));
    _tracks = tracks;
}
