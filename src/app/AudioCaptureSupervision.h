#pragma once

#include "base/RunLoop.h"

#include <QObject>

class AudioBridge;
class AudioSourceManager;
class NowPlayingService;
class PowerModeManager;
struct Platform;

/// Ties the capture of sound to its use. It runs, if the power mode allows it, while something plays, and
/// while system audio is followed also when nothing plays: else nobody would hear it begin.
class AudioCaptureSupervision : public QObject
{
    Q_OBJECT

public:
    AudioCaptureSupervision(Platform& platform, NowPlayingService& service, AudioSourceManager& sources,
                            PowerModeManager& power, AudioBridge& bridge);
    ~AudioCaptureSupervision() override;

    /// Begins to supervise. Capture that has failed, as for want of permission, is tried again every half
    /// minute as long as there is use for it.
    void startAudioCapture();

private:
    void applyPowerModeToAudioCapture();
    bool isAudioCaptureWanted() const;

    Platform& _platform;
    NowPlayingService& _service;
    AudioSourceManager& _sources;
    PowerModeManager& _power;
    AudioBridge& _bridge;
    std::unique_ptr<RunLoop::Timer> _audioRetryTimer;
};
