#include "audio/VisualizerModel.h"

#include "audio/AudioBridge.h"
#include "base/RunLoop.h"
#include "prefs/PowerModeManager.h"

#include <algorithm>

namespace {

constexpr int fastest = 60; // frames per second; what is stored may be anything

} // namespace

VisualizerModel::VisualizerModel(RunLoop& runLoop, const AudioBridge& audio,
                                 const PowerModeManager& powerMode)
    : _runLoop(runLoop)
    , _audio(audio)
    , _powerMode(powerMode)
{
    connect(&_powerMode, &PowerModeManager::manualModeChanged, this, &VisualizerModel::changed);
    connect(&_powerMode, &PowerModeManager::settingsChanged, this, &VisualizerModel::changed);
    connect(&_powerMode, &PowerModeManager::systemLowPowerEnabledChanged, this, &VisualizerModel::changed);
}

void VisualizerModel::setPlaying(bool isPlaying)
{
    if (isPlaying == _bars.isPlaying) {
        return;
    }
    _bars.isPlaying = isPlaying;
    _bars.stoppedAt.reset();
    if (!isPlaying) {
        _bars.stoppedAt = _runLoop.uptime();
        awaitRest();
    }
    Q_EMIT changed();
}

/// Tells of the end of the fall, which nothing else does. A timer may be early.
void VisualizerModel::awaitRest()
{
    constexpr double fall = VisualizerBars::windDownDuration + VisualizerBars::afterglow;
    constexpr double shortest = 0.01;
    const double left = fall - (_runLoop.uptime() - _bars.stoppedAt.value_or(Uptime::distantPast()));
    if (left <= 0) {
        Q_EMIT changed();
        return;
    }
    _runLoop.after(std::max(left, shortest), this, [this] { awaitRest(); });
}

bool VisualizerModel::isEnabled() const
{
    return _powerMode.effectiveSettings().visualizerEnabled;
}

int VisualizerModel::framesPerSecond() const
{
    const bool isMoving = isEnabled() && _bars.needsAnimation(_runLoop.uptime());
    return isMoving ? std::clamp(_powerMode.effectiveSettings().visualizerFPS, 0, fastest) : 0;
}

bool VisualizerModel::isAtRest() const
{
    return isEnabled() && !_bars.isPlaying && framesPerSecond() == 0;
}

VisualizerModel::Heights VisualizerModel::heights() const
{
    VisualizerBars bars = _bars;
    bars.isLive = _audio.isLive();
    bars.bands = _audio.bands();
    const Uptime now = _runLoop.uptime();
    const Uptime shown = framesPerSecond() > 0 ? now : _bars.stoppedAt.value_or(now);
    Heights heights{};
    for (int bar = 0; bar < VisualizerBars::barCount; ++bar) {
        heights[bar] = bars.barHeight(bar, shown);
    }
    return heights;
}
