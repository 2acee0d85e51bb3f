#include "audio/AudioBridge.h"
#include "base/DebugLog.h"
#include "base/Decimal.h"
#include "engine/NowPlayingService.h"
#include "platform/Platform.h"

#include <algorithm>

namespace {

constexpr float loudLevel = 0.02F;
constexpr double pauseTail = 1.5;       // seconds of sound that a pausing player may still make
constexpr double engagementSeconds = 8; // how long heard sound counts as lately heard
constexpr int silentFramesToStop = 15;
constexpr int loudFramesToStart = 6;

} // namespace

void NowPlayingService::enterSystemAudioMode()
{
    const bool isFresh = _activePlayer != Player::systemAudio;
    dlog(QStringLiteral("enterSysAudio: prevActive=%1 fresh=%2 bridgeEnabled=%3 bridgeLive=%4")
             .arg(playerName(_activePlayer), boolText(isFresh), boolText(_audio.isEnabled()),
                  boolText(_audio.isLive())));
    // Without levels it is taken to play until they say otherwise.
    showSystemAudioState(_isPlaying || (isFresh && !_audio.isLive()));
    if (!isFresh) {
        return;
    }
    _systemAudioSilenceTicks = 0;
    _systemAudioActivityTicks = 0;
    _systemAudioUserPaused = false;
    if (_audio.isEnabled()) {
        _audio.start();
    } else {
        _audio.setEnabled(true);
    }
}

/// Sound that is live now, or was a short while ago, comes before a paused player. Live sound right after a
/// player has paused is that player's own tail and only prolongs what was engaged before.
bool NowPlayingService::followSystemAudio()
{
    if (!isEnabledSource(Player::systemAudio)) {
        return false;
    }
    const Uptime now = _platform.runLoop.uptime();
    const bool isLive = isLoud(_audio.bands());
    const bool isEngaged = now < _systemAudioEngagedUntil;
    const bool isNewSound = isLive && sincePlayerPause() >= pauseTail;
    if (!isNewSound && !isEngaged) {
        return false;
    }
    if (isLive) {
        _systemAudioEngagedUntil = now + engagementSeconds;
    }
    dlog(QStringLiteral("refresh: -> systemAudio (live=%1 engaged=%2)")
             .arg(boolText(isLive), boolText(isEngaged)));
    enterSystemAudioMode();
    return true;
}

void NowPlayingService::applySystemAudioActivity(const QList<float>& bands)
{
    const bool isLive = isLoud(bands);
    if (isLive && isEnabledSource(Player::systemAudio)) {
        const bool isPlayerPlaying =
            (_activePlayer == Player::appleMusic || _activePlayer == Player::spotify) && _isPlaying;
        if (!isPlayerPlaying && sincePlayerPause() >= pauseTail) {
            _systemAudioEngagedUntil = _platform.runLoop.uptime() + engagementSeconds;
            if (_activePlayer != Player::systemAudio) {
                refresh();
            }
        }
    }
    if (_activePlayer != Player::systemAudio) {
        _systemAudioSilenceTicks = 0;
        _systemAudioActivityTicks = 0;
    } else if (_audio.isLive()) {
        countSystemAudioFrame(isLive);
    } else if (_systemAudioSilenceTicks < silentFramesToStop) {
        _isPlaying = !_systemAudioUserPaused; // nothing has been heard that could say otherwise
    }
}

/// Fifteen silent frames on end stop the play indicator, six loud ones start it.
void NowPlayingService::countSystemAudioFrame(bool isLoudFrame)
{
    if (isLoudFrame) {
        _systemAudioSilenceTicks = 0;
        if (++_systemAudioActivityTicks >= loudFramesToStart) {
            _isPlaying = true;
        }
        return;
    }
    _systemAudioActivityTicks = 0;
    if (++_systemAudioSilenceTicks >= silentFramesToStop) {
        _isPlaying = false;
    }
}

bool NowPlayingService::isLoud(const QList<float>& bands) const
{
    return _audio.isLive() && !bands.isEmpty() && *std::max_element(bands.begin(), bands.end()) > loudLevel;
}

double NowPlayingService::sincePlayerPause() const
{
    return _platform.runLoop.uptime() - _lastSourcePauseTime;
}
