#include "app/AudioCaptureSupervision.h"

#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "engine/NowPlayingService.h"
#include "platform/Platform.h"
#include "platform/PowerState.h"
#include "prefs/PowerModeManager.h"

namespace {

constexpr double audioRetryInterval = 30; // seconds

} // namespace

AudioCaptureSupervision::AudioCaptureSupervision(Platform& platform, NowPlayingService& service,
                                                 AudioSourceManager& sources, PowerModeManager& power,
                                                 AudioBridge& bridge)
    : _platform(platform)
    , _service(service)
    , _sources(sources)
    , _power(power)
    , _bridge(bridge)
{
}

AudioCaptureSupervision::~AudioCaptureSupervision()
{
    _bridge.stop(); // it outlives the platform that it listens on
}

void AudioCaptureSupervision::startAudioCapture()
{
    const auto applySoon = [this] {
        _platform.runLoop.after(0, this, [this] { applyPowerModeToAudioCapture(); });
    };
    applySoon();
    connect(&_service, &NowPlayingService::isPlayingChanged, this, applySoon);
    connect(&_sources, &AudioSourceManager::enabledSourcesChanged, this, applySoon);
    connect(&_platform.power, &PowerState::changed, this, applySoon);
    connect(&_power, &PowerModeManager::manualModeChanged, this, applySoon);
    connect(&_power, &PowerModeManager::settingsChanged, this, applySoon);
    _audioRetryTimer = _platform.runLoop.every(audioRetryInterval, this, [this] {
        if (isAudioCaptureWanted()) {
            applyPowerModeToAudioCapture();
        }
    });
}

void AudioCaptureSupervision::applyPowerModeToAudioCapture()
{
    if (isAudioCaptureWanted()) {
        _bridge.start();
    } else {
        _bridge.stop();
    }
}

bool AudioCaptureSupervision::isAudioCaptureWanted() const
{
    const bool hasUse = _service.isPlaying() || _sources.includesSystemAudio();
    return hasUse && _power.audioCaptureAllowed();
}
