#include "prefs/RecentlyPlayedManager.h"

#include "base/RunLoop.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"

#include <QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(recentLog, "com.orvalen.pellar.recent")

const QString tracksKey = QStringLiteral("pellar.recentlyPlayed.v1");

constexpr qsizetype mostTracks = 12;

} // namespace

RecentlyPlayedManager::RecentlyPlayedManager(UserDefaults& defaults, const RunLoop& clock)
    : _defaults(defaults)
    , _clock(clock)
{
    if (const auto json = defaults.data(tracksKey)) {
        const auto stored = decodePlayedTracks(*json);
        if (!stored) {
            qCWarning(recentLog)
                << "the stored list of recently played tracks cannot be read; it starts anew";
        }
        _tracks = stored.value_or(QList<PlayedTrack>()).mid(0, mostTracks);
    }
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
    _defaults.setObject(tracksKey, encodePlayedTracks(tracks));
    _tracks = tracks;
}
