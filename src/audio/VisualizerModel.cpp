#include "audio/VisualizerModel.h"

#include "audio/AudioBridge.h"
#include "base/RunLoop.h"
#include "prefs/PowerModeManager.h"

#include <algorithm>

namespace {

constexpr int fastest = 60; // frames per second; what is stored may be anything

} // namespace

VisualizerModel::VisualizerModel(RunLoop& runLoop, AudioBridge& audio, const PowerModeManager& powerMode)
    : _runLoop(runLoop)
    , _audio(audio)
{
    _isEnabled.setBinding([&powerMode] { return powerMode.effectiveSettings().visualizerEnabled; });
    _framesPerSecond.setBinding([this, &powerMode] {
        const int rate = std::clamp(powerMode.effectiveSettings().visualizerFPS, 0, fastest);
        return _isEnabled && _isMoving ? rate : 0;
    });
    _isAtRest.setBinding([this] { return _isEnabled && !_isPlaying && _framesPerSecond == 0; });
}

void VisualizerModel::followPlayback()
{
    _bars.isPlaying = _isPlaying;
    _bars.stoppedAt.reset();
    _isMoving = true;
    if (!_isPlaying) {
        _bars.stoppedAt = _runLoop.uptime();
        awaitRest();
    }
}

/// Tells of the end of the fall, which nothing else does. A timer may be early, and music may play again.
void VisualizerModel::awaitRest()
{
    constexpr double fall = VisualizerBars::windDownDuration + VisualizerBars::afterglow;
    constexpr double shortest = 0.01;
    const Uptime now = _runLoop.uptime();
    _isMoving = _bars.needsAnimation(now);
    if (_isMoving && _bars.stoppedAt) {
        const double left = fall - (now - *_bars.stoppedAt);
        _runLoop.after(std::max(left, shortest), this, [this] { awaitRest(); });
    }
}

VisualizerModel::Heights VisualizerModel::heights() const
{
    VisualizerBars bars = _bars;
    bars.isLive = _audio.isLive();
    bars.bands = _audio.bands();
    const Uptime now = _runLoop.uptime();
    const Uptime shown = framesPerSecond() > 0 ? now : bars.stoppedAt.value_or(now);
    Heights heights{};
    for (int bar = 0; bar < VisualizerBars::barCount; ++bar) {
        heights[bar] = bars.barHeight(bar, shown);
    }
    return heights;
}
