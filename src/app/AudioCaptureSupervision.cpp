#include "app/AudioCaptureSupervision.h"

#include "audio/AudioBridge.h"
#include "audio/AudioDeviceManager.h"
#include "audio/AudioSourceManager.h"
#include "engine/NowPlayingService.h"
#include "platform/Platform.h"
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
    applySoon();
    connect(&_of.service, &NowPlayingService::isPlayingChanged, this, &AudioCaptureSupervision::applySoon);
    connect(&_of.bridge, &AudioBridge::enabledSet, this, &AudioCaptureSupervision::applySoon);
    _isWanted.setBinding([this] {
        const bool isShown = _of.service.isPlaying() && _of.visibility.showVisualizer;
        return (isShown || _of.sources.includesSystemAudio()) && _of.power.audioCaptureAllowed();
    });
    _pace.setBinding([this] { return _of.power.effectiveSettings().visualizerFPS; });
    connect(&_of.devices, &AudioDeviceManager::devicesChanged, this, [this] { retry(); });
    _audioRetryTimer = _of.platform.runLoop.every(audioRetryInterval, this, [this] { retry(); });
}

void AudioCaptureSupervision::applyPace()
{
    _of.bridge.setPace(_pace);
}

void AudioCaptureSupervision::retry()
{
    if (_isWanted) {
        applyPowerModeToAudioCapture();
    }
}

void AudioCaptureSupervision::applySoon()
{
    _of.platform.runLoop.after(0, this, [this] { applyPowerModeToAudioCapture(); });
}

void AudioCaptureSupervision::applyPowerModeToAudioCapture()
{
    if (_isWanted) {
        _of.bridge.start();
    } else {
        _of.bridge.stop();
    }
}
