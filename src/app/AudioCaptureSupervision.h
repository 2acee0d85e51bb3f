#pragma once

#include "base/RunLoop.h"

#include <QObject>
#include <QProperty>

class AudioBridge;
class AudioDeviceManager;
class AudioSourceManager;
class NowPlayingService;
class PillVisibilityManager;
class PowerModeManager;
struct Platform;

/// Ties the capture of sound to its use. It runs, if the power mode allows it, while something plays and the
/// pill shows its level, and as long as system audio is followed also when nothing plays: else nobody would
/// hear it begin.
class AudioCaptureSupervision : public QObject
{
    Q_OBJECT

public:
    /// What it ties together. Everything outlives it.
    struct Dependencies {
        Platform& platform;
        NowPlayingService& service;
        AudioSourceManager& sources;
        AudioDeviceManager& devices;
        PowerModeManager& power;
        PillVisibilityManager& visibility;
        AudioBridge& bridge;
    };

    explicit AudioCaptureSupervision(const Dependencies& dependencies);
    ~AudioCaptureSupervision() override;

    /// Begins to supervise. Capture that has failed, as for want of permission, is tried again every half
    /// minute as long as there is use for it, and as soon as devices come: then the sound server is there.
    void startAudioCapture();

private:
    void retry();
    void applySoon();
    void applyPace();
    void applyPowerModeToAudioCapture();

    Dependencies _of;
    std::unique_ptr<RunLoop::Timer> _audioRetryTimer;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(AudioCaptureSupervision, bool, _isWanted, false,
                                         &AudioCaptureSupervision::applySoon)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(AudioCaptureSupervision, int, _pace, 0,
                                         &AudioCaptureSupervision::applyPace)
};
