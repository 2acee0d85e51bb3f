#include "app/AudioCaptureSupervision.h"

#include "audio/AudioBridge.h"
#include "audio/AudioDeviceManager.h"
#include "audio/AudioSourceManager.h"
#include "engine/NowPlayingService.h"
#include "platform/Platform.h"
#include "platform/PowerState.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/PowerModeManager.h"

namespace {

constexpr double audioRetryInterval = 30; // seconds

} // namespace

AudioCaptureSupervision::AudioCaptureSupervision(const Dependencies& dependencies) : _of(dependencies) {}

AudioCaptureSupervision::~AudioCaptureSupervision()
{
    _of.bridge.stop(); // it outlives the platform that it listens on
}

void AudioCaptureSupervision::startAudioCapture()
{
    const auto applySoon = [this] {
        _of.platform.runLoop.after(0, this, [this] { applyPowerModeToAudioCapture(); });
    };
    applySoon();
    connect(&_of.service, &NowPlayingService::isPlayingChanged, this, applySoon);
    connect(&_of.sources, &AudioSourceManager::enabledSourcesChanged, this, applySoon);
    connect(&_of.visibility, &PillVisibilityManager::showVisualizerChanged, this, applySoon);
    connect(&_of.platform.power, &PowerState::changed, this, applySoon);
    connect(&_of.power, &PowerModeManager::manualModeChanged, this, applySoon);
    connect(&_of.power, &PowerModeManager::settingsChanged, this, applySoon);
    connect(&_of.devices, &AudioDeviceManager::devicesChanged, this, [this] { retry(); });
    _audioRetryTimer = _of.platform.runLoop.every(audioRetryInterval, this, [this] { retry(); });
}

void AudioCaptureSupervision::retry()
{
    if (isAudioCaptureWanted()) {
        applyPowerModeToAudioCapture();
    }
}

void AudioCaptureSupervision::applyPowerModeToAudioCapture()
{
    if (isAudioCaptureWanted()) {
        _of.bridge.start();
    } else {
        _of.bridge.stop();
    }
}

bool AudioCaptureSupervision::isAudioCaptureWanted() const
{
    const bool isShown = _of.service.isPlaying() && _of.visibility.showVisualizer();
    return (isShown || _of.sources.includesSystemAudio()) && _of.power.audioCaptureAllowed();
}
