#pragma once

#include "audio/AudioCapture.h"
#include "audio/SampleRing.h"
#include "audio/SpectrumAnalyzer.h"
#include "base/QueueTimer.h"
#include "base/SerialQueue.h"
#include "base/Uptime.h"
#include "platform/AudioHardware.h"

#include <atomic>
#include <memory>
#include <mutex>

class RunLoop;

/// Captures what the computer plays, but for the program's own sounds, and analyses it 30 times a second, as
/// long as anything plays. Frames are made and published together as far as `setPace` and `catchUp` allow.
/// Without permission, or when the tap cannot be set up, it stays idle until `start` is called again.
class AudioCaptureService final : public AudioCapture
{
    Q_OBJECT

public:
    static constexpr double silenceTimeoutSecs = 2;

    /// `runLoop` is asked for the time from the sampler's thread too.
    AudioCaptureService(AudioHardware& hardware, RunLoop& runLoop);
    ~AudioCaptureService() override;

    /// Asks for permission if need be and begins to capture; while running, sees to it that the processes
    /// left out are still the right ones. Any thread.
    void start() override;

    /// Ends the capture and publishes silence, behind the frames that are under way. Any thread.
    void stop() override;

    /// Main thread.
    void setPace(int framesPerSecond) override;
    void catchUp() override;

    /// Four levels, each 0 to 1, bass to treble.
    QList<float> bands() const { return _bands; }

    /// Whether sound was heard within the last `silenceTimeoutSecs`.
    bool isLive() const { return _isLive; }

    bool isRunning() const { return _isRunning; }

    /// Hz
    float sampleRate() const { return _sampleRate; }

    /// The IO procedure; `clientData` is the service. Real-time: it fills the ring and does nothing else.
    static int audioIOProc(AudioObjectId device, const AudioTimeStamp* now, const AudioBufferList* input,
                           const AudioTimeStamp* inputTime, AudioBufferList* output,
                           const AudioTimeStamp* outputTime, void* clientData);

private:
    void requestAccess();
    void beginCapture();
    QList<AudioObjectId> findProcessIDs() const;
    bool setupTap(const QList<AudioObjectId>& excludedProcesses);
    bool createTap(const QList<AudioObjectId>& excludedProcesses);
    std::optional<QString> readTapUid() const;
    bool createAggregateDevice(const QString& tapUid);
    bool startDevice();
    void tearDown();
    void destroyAggregateDevice();
    void destroyTap();
    void observeDevice();
    void deviceChanged(AudioHardware::DeviceState state);
    void startSampler();
    void rest();
    void sample(quint64 session, int frames);
    void sampleAndAnalyze(quint64 session, int framesBack);
    void publish(const QList<float>& bands, bool isLive);

    AudioHardware& _hardware;
    RunLoop& _runLoop;

    QList<float> _bands = {0, 0, 0, 0};
    bool _isLive = false;
    bool _isRunning = false;
    bool _isSounding = true; ///< else there is nothing to be sampled
    AudioObjectId _tapID = 0;
    AudioObjectId _aggregateID = 0;
    AudioIOProcId _ioProcID = 0;
    QList<AudioObjectId> _lastTapTargetIDs;
    quint64 _request = 0; ///< the access request that may still begin a capture

    SampleRing _ring;
    std::atomic<float> _sampleRate = 48000;
    quint64 _session = 0; ///< frames of an earlier one are not published

    // From the sampler to the main thread.
    struct Frame {
        quint64 session;
        QList<float> bands;
        bool isLive;
    };
    std::mutex _readyLock;
    QList<Frame> _ready;
    int _framesAtOnce = 1; ///< that the sampler makes

    // The sampler's own, on its queue.
    SpectrumAnalyzer _analyzer;
    SpectrumAnalyzer::Samples _frame{};
    Uptime _lastNonSilentTime = Uptime::distantPast();
    bool _wasLive = false;

    SerialQueue _samplerQueue{QStringLiteral("com.orvalen.pellar.audio.sampler")};
    std::unique_ptr<QueueTimer> _sampler;
};
