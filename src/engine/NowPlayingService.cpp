#include "engine/NowPlayingService.h"

#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "base/ClockText.h"
#include "base/NotificationCenter.h"
#include "platform/BundleId.h"
#include "platform/Platform.h"
#include "platform/ScriptRunner.h"
#include "platform/Workspace.h"
#include "prefs/PowerModeManager.h"

#include <algorithm>

namespace {

/// Empty for what is no player.
QString bundleId(Player player)
{
    switch (player) {
    case Player::appleMusic:
        return BundleId::music;
    case Player::spotify:
        return BundleId::spotify;
    case Player::systemAudio:
    case Player::none:
        break;
    }
    return {};
}

} // namespace

NowPlayingService::NowPlayingService(const Dependencies& dependencies, EngineNeighbours neighbours,
                                     QObject* parent)
    : QObject(parent)
    , _platform(dependencies.platform)
    , _defaults(dependencies.defaults)
    , _sources(dependencies.sources)
    , _audio(dependencies.audio)
    , _power(dependencies.power)
    , _theme(dependencies.theme)
    , _recentlyPlayed(dependencies.recentlyPlayed)
    , _neighbours(std::move(neighbours))
    , _stats(dependencies.defaults, dependencies.platform.runLoop)
{
    subscribe();
    refresh();
    _timer = _platform.runLoop.every(1.0, this, [this] { tick(); });
}

NowPlayingService::~NowPlayingService()
{
    _artworkStop.request_stop(); // the queue is waited for
}

void NowPlayingService::subscribe()
{
    const auto follow = [this](const QString& notification, Player player) {
        _platform.distributedNotifications.observe(
            notification, this, [this, player](const QVariantMap& userInfo) {
                _platform.runLoop.after(
                    0, this, [this, player, userInfo] { handlePlayerNotification(player, userInfo); });
            });
    };
    follow(QStringLiteral("com.apple.Music.playerInfo"), Player::appleMusic);
    follow(QStringLiteral("com.spotify.client.PlaybackStateChanged"), Player::spotify);

    const auto refreshForPlayer = [this](const QString& bundleId) {
        if (bundleId == BundleId::music || bundleId == BundleId::spotify) {
            refreshLater();
        }
    };
    connect(&_platform.workspace, &Workspace::applicationLaunched, this, refreshForPlayer);
    connect(&_platform.workspace, &Workspace::applicationTerminated, this, refreshForPlayer);
    connect(&_platform.workspace, &Workspace::playerOutdated, this, refreshForPlayer);

    connect(&_platform.workspace, &Workspace::playerMoved, this, [this](const QString& player) {
        // Behind the notification of another track, of which it may speak.
        _platform.runLoop.after(0, this, [this, player] {
            if (player == bundleId(_activePlayer)) {
                followPlace(position());
            }
        });
    });

    _platform.notifications.observe(AudioSourceManager::audioSourceChanged, this,
                                    [this](const QVariantMap&) { refreshLater(); });
    connect(&_audio, &AudioBridge::bandsPublished, this, &NowPlayingService::applySystemAudioActivity);
}

void NowPlayingService::tick()
{
    ++_tickCount;
    if (_isPlaying && _elapsed < _duration) {
        _elapsed = std::min(_elapsed + _clock.value().rate, duration());
    }
    if (_isPlaying && !artist().isEmpty()) {
        _stats.tick(_artist);
    }
    const int interval = std::max(1, _power.effectiveSettings().driftRefreshSeconds);
    if (_tickCount % interval == 0) {
        refresh();
    }
}

QString NowPlayingService::timeRemainingText() const
{
    return ::timeRemainingText(_duration, _elapsed);
}

NowPlayingService::Showing NowPlayingService::showing() const
{
    return {.title = _title,
            .artist = _artist,
            .album = _album,
            .duration = _duration,
            .elapsed = _elapsed,
            .isPlaying = _isPlaying,
            .activePlayer = _activePlayer};
}

double NowPlayingService::position() const
{
    return _clock.value().at(_platform.runLoop.uptime());
}

void NowPlayingService::checkPosition()
{
    _platform.workspace.checkPosition(bundleId(_activePlayer));
}

/// Where the track is from now on: as the desktop knows it, or else from `place` on.
TrackClock NowPlayingService::reckoned(const Showing& next, double place) const
{
    const QString player = bundleId(next.activePlayer);
    if (player.isEmpty()) {
        return {};
    }
    const auto told = _platform.workspace.playbackPosition(player).value_or(
        PlaybackPosition{.seconds = place, .rate = next.isPlaying ? 1.0 : 0.0});
    const Uptime now = _platform.runLoop.uptime();
    const TrackClock clock{.place = told.seconds, .since = now, .rate = told.rate, .length = next.duration};
    return clock.agrees(_clock, now) ? _clock : clock;
}

void NowPlayingService::followPlace(double place)
{
    _clock = reckoned(showing(), place);
}

/// Sets all values before any observer is notified, so that none of them sees half a track. A value that
/// stays the same notifies nobody. They are told one by one: in an update group of Qt 6.4 a second binding to
/// the same property may be left out. `place` is where the track is, if `elapsed` was not read just now.
void NowPlayingService::publish(const Showing& next, std::optional<double> place)
{
    const bool isSpotifyNow = next.activePlayer == Player::spotify && _activePlayer != Player::spotify;
    const auto write = [](auto& property, const auto& value) {
        const bool isChanged = property.valueBypassingBindings() != value;
        property.setValueBypassingBindings(value);
        return isChanged;
    };
    const bool isTitle = write(_title, next.title);
    const bool isArtist = write(_artist, next.artist);
    const bool isAlbum = write(_album, next.album);
    const bool isDuration = write(_duration, next.duration);
    const bool isElapsed = write(_elapsed, next.elapsed);
    const bool isClock = write(_clock, reckoned(next, place.value_or(next.elapsed)));
    const bool isPlaying = write(_isPlaying, next.isPlaying);
    const bool isActivePlayer = write(_activePlayer, next.activePlayer);
    const auto tell = [](bool isChanged, auto& property) {
        if (isChanged) {
            property.notify();
        }
    };
    tell(isActivePlayer, _activePlayer);
    tell(isTitle, _title);
    tell(isArtist, _artist);
    tell(isAlbum, _album);
    tell(isDuration, _duration);
    tell(isElapsed, _elapsed);
    tell(isClock, _clock);
    tell(isPlaying, _isPlaying);
    if (isSpotifyNow && _neighbours.refreshSpotifyQueue) {
        _neighbours.refreshSpotifyQueue();
    }
}

std::optional<QString> NowPlayingService::runScript(const QString& source)
{
    return _platform.scripts.run(source).reply;
}

bool NowPlayingService::isRunning(Player player) const
{
    return _platform.workspace.isRunning(bundleId(player));
}

bool NowPlayingService::isEnabledAndRunning(Player player) const
{
    return isEnabledSource(player) && isRunning(player);
}

bool NowPlayingService::isEnabledSource(Player player) const
{
    switch (player) {
    case Player::appleMusic:
        return _sources.includesAppleMusic();
    case Player::spotify:
        return _sources.includesSpotify();
    case Player::systemAudio:
        return _sources.includesSystemAudio();
    case Player::none:
        break;
    }
    return false;
}

void NowPlayingService::clearState()
{
    _lastTrackKey.clear();
    publish({.title = QStringLiteral("Not Playing")});
    clearArtwork();
}

void NowPlayingService::showSystemAudioState(bool isPlaying)
{
    _lastTrackKey.clear();
    publish({.title = QStringLiteral("System Audio"),
             .isPlaying = isPlaying,
             .activePlayer = Player::systemAudio});
    clearArtwork();
}

void NowPlayingService::refreshLater(double seconds)
{
    _platform.runLoop.after(seconds, this, [this] { refresh(); });
}
