#include "audio/AudioBridge.h"
#include "base/DebugLog.h"
#include "base/Decimal.h"
#include "engine/NowPlayingService.h"
#include "engine/PlayerScripts.h"
#include "engine/SongLink.h"
#include "platform/Automation.h"
#include "platform/BundleId.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <QUrl>

#include <cmath>

namespace {

// Seconds until the player has had time to obey.
constexpr double toggleSettling = 0.3;
constexpr double skipSettling = 0.5;
constexpr double seekSettling = 0.3;
constexpr double hijackDelay = 0.4;

// Seconds for which the display stays on system audio after a media key.
constexpr double stickSeconds = 5;
constexpr double keyEngagementSeconds = 30;

} // namespace

Player NowPlayingService::commandTarget() const
{
    if (_activePlayer != Player::none) {
        return _activePlayer;
    }
    if (isEnabledAndRunning(Player::spotify)) {
        return Player::spotify;
    }
    if (isEnabledAndRunning(Player::appleMusic)) {
        return Player::appleMusic;
    }
    return isEnabledSource(Player::systemAudio) ? Player::systemAudio : Player::none;
}

void NowPlayingService::togglePlayPause()
{
    const Player target = commandTarget();
    dlog(QStringLiteral("togglePlayPause: target=%1 active=%2 ax=%3")
             .arg(playerName(target), playerName(_activePlayer),
                  boolText(_platform.automation.isTrustedForAccessibility())));
    switch (target) {
    case Player::appleMusic:
    case Player::spotify:
        runScript(PlayerScripts::playPause(target));
        break;
    case Player::systemAudio:
        sendMediaKey(MediaKeys::Key::playPause);
        _systemAudioUserPaused = !_systemAudioUserPaused;
        if (!_audio.isLive()) {
            _isPlaying = !_systemAudioUserPaused;
        }
        break;
    case Player::none:
        return;
    }
    refreshLater(toggleSettling);
}

void NowPlayingService::nextTrack()
{
    skip(Direction::next);
}

void NowPlayingService::previousTrack()
{
    skip(Direction::previous);
}

void NowPlayingService::skip(Direction direction)
{
    // The next track's artwork is fetched even if it bears the same name.
    _currentArtworkSource.clear();
    const bool isNext = direction == Direction::next;
    const Player target = commandTarget();
    switch (target) {
    case Player::appleMusic:
    case Player::spotify:
        runScript(isNext ? PlayerScripts::nextTrack(target) : PlayerScripts::previousTrack(target));
        break;
    case Player::systemAudio:
        sendMediaKey(isNext ? MediaKeys::Key::next : MediaKeys::Key::previous);
        break;
    case Player::none:
        return;
    }
    refreshLater(skipSettling);
}

void NowPlayingService::seekTo(double seconds)
{
    if (!std::isfinite(seconds)) {
        return;
    }
    _elapsed = seconds;
    const Player target = commandTarget();
    if (target == Player::appleMusic || target == Player::spotify) {
        runScript(PlayerScripts::seek(target, seconds));
    }
    followPlace(seconds);
    refreshLater(seekSettling);
}

void NowPlayingService::sendMediaKey(MediaKeys::Key key)
{
    const Uptime now = _platform.runLoop.uptime();
    _systemAudioStickUntil = now + stickSeconds;
    _systemAudioEngagedUntil = now + keyEngagementSeconds;
    if (_neighbours.sendMediaKey) {
        _neighbours.sendMediaKey(key);
    }
    scheduleHijackSilencer();
}

/// A media key may start a paused player instead of what it was meant for; that player is paused again. One
/// that is no enabled source is left alone: the key was meant for it.
void NowPlayingService::scheduleHijackSilencer()
{
    _platform.runLoop.after(hijackDelay, this, [this] {
        if (_activePlayer != Player::systemAudio) {
            return;
        }
        for (const Player player : {Player::spotify, Player::appleMusic}) {
            if (isEnabledAndRunning(player)) {
                runScript(PlayerScripts::pauseIfPlaying(player));
            }
        }
    });
}

bool NowPlayingService::supportsLoveAction() const
{
    const Player target = commandTarget();
    return target == Player::appleMusic || target == Player::spotify;
}

bool NowPlayingService::supportsDislikeAction() const
{
    return commandTarget() == Player::appleMusic;
}

void NowPlayingService::loveCurrentTrack()
{
    const Player target = commandTarget();
    if (target == Player::appleMusic) {
        runScript(PlayerScripts::loveMusic());
    } else if (target == Player::spotify && _platform.workspace.abilities(BundleId::spotify).canRate) {
        runScript(PlayerScripts::loveSpotify()); // a key, which elsewhere does something else
    }
}

void NowPlayingService::dislikeCurrentTrack()
{
    if (commandTarget() == Player::appleMusic) {
        runScript(PlayerScripts::dislikeMusic());
    }
}

TrackReaction NowPlayingService::currentTrackReaction()
{
    if (commandTarget() != Player::appleMusic) {
        return {};
    }
    return parseReactionReply(runScript(PlayerScripts::reaction()));
}

void NowPlayingService::setSleepTimer(int minutes)
{
    constexpr double secondsAMinute = 60;
    cancelSleepTimer();
    _sleepTimerRemaining = minutes * secondsAMinute;
    _sleepTimer = _platform.runLoop.every(1.0, this, [this] { tickSleepTimer(); });
}

void NowPlayingService::cancelSleepTimer()
{
    _sleepTimer.reset();
    _sleepTimerRemaining = std::nullopt;
}

void NowPlayingService::tickSleepTimer()
{
    const auto remaining = sleepTimerRemaining();
    if (!remaining) {
        return;
    }
    if (*remaining - 1 > 0) {
        _sleepTimerRemaining = *remaining - 1;
        return;
    }
    cancelSleepTimer();
    if (_isPlaying) {
        togglePlayPause();
    }
}

void NowPlayingService::copySongLink()
{
    _platform.pasteboard.setText(songLink(_activePlayer, _title, _artist, _defaults));
}

void NowPlayingService::openInApp()
{
    const Player target = commandTarget();
    if (target == Player::spotify) {
        _platform.workspace.open(QUrl(QStringLiteral("spotify://")));
    } else if (target == Player::appleMusic) {
        _platform.workspace.open(QUrl(QStringLiteral("music://")));
    }
}
