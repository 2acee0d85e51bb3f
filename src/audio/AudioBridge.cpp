#include "audio/AudioBridge.h"

#include "audio/AudioCaptureService.h"
#include "base/RunLoop.h"
#include "platform/Platform.h"

namespace {

const QString decidedKey = QStringLiteral("com.orvalen.pellar.audio.live_visualizer_decided");

} // namespace

AudioBridge::AudioBridge(RunLoop& runLoop, UserDefaults& defaults, std::unique_ptr<AudioCapture> capture)
    : _runLoop(runLoop)
    , _defaults(defaults)
    , _capture(std::move(capture))
    , _isEnabled(defaults, QStringLiteral("com.orvalen.pellar.audio.live_visualizer_enabled"), false)
{
    if (_capture) {
        connect(_capture.get(), &AudioCapture::bandsPublished, this, &AudioBridge::publish);
        connect(_capture.get(), &AudioCapture::liveChanged, this, [this](bool isLive) { _isLive = isLive; });
    }
}

AudioBridge::~AudioBridge() = default;

AudioBridge& AudioBridge::shared()
{
    static auto* const instance = [] {
        const Platform& platform = Platform::current();
        return new AudioBridge(
            platform.runLoop, UserDefaults::standard(),
            std::make_unique<AudioCaptureService>(platform.audioHardware, platform.runLoop));
    }();
    return *instance;
}

void AudioBridge::setEnabled(bool enabled)
{
    _isEnabled = enabled;
    _defaults.setObject(decidedKey, true);
    if (enabled) {
        start();
    } else {
        stop();
    }
    Q_EMIT enabledSet();
}

bool AudioBridge::hasUserDecided() const
{
    return _defaults.boolean(decidedKey).value_or(false);
}

void AudioBridge::start()
{
    if (_isEnabled && _capture) {
        _capture->start();
    }
}

void AudioBridge::stop()
{
    if (_capture) {
        _capture->stop();
    }
    // Not at once but behind the frames that capture has already sent.
    _runLoop.after(0, this, [this] {
        publish({0, 0, 0, 0});
        _isLive = false;
    });
}

void AudioBridge::setPace(int framesPerSecond)
{
    if (_capture) {
        _capture->setPace(framesPerSecond);
    }
}

void AudioBridge::catchUp()
{
    if (_capture) {
        _capture->catchUp();
    }
}

void AudioBridge::publish(const QList<float>& bands)
{
    _bands = bands;
    Q_EMIT bandsPublished(bands);
}
