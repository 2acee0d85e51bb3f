#include "audio/AudioCaptureService.h"

#include "base/DebugLog.h"
#include "base/Decimal.h"
#include "base/RunLoop.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(audioLog, "com.orvalen.pellar.audio", QtWarningMsg)

const QStringList tapExcludeBundlePrefixes = {QStringLiteral("com.orvalen.pellar")};
constexpr double defaultSampleRate = 48000; // Hz
constexpr float silenceFloor = 0.0005F;     // RMS of a frame
constexpr int samplerRate = 30;             // frames a second
constexpr int mostFramesAtOnce = 3;

void trace(const QString& message)
{
    dlog(QStringLiteral("AudioCap: ") + message);
}

bool isOwn(const QString& bundleId)
{
    return std::any_of(tapExcludeBundlePrefixes.begin(), tapExcludeBundlePrefixes.end(),
                       [&](const QString& prefix) { return bundleId.startsWith(prefix); });
}

/// ["one", "two"]
QString listText(const QStringList& items)
{
    return items.isEmpty() ? QStringLiteral("[]")
                           : QStringLiteral("[\"%1\"]").arg(items.join(QStringLiteral("\", \"")));
}

QVariantMap aggregateDescription(const QString& tapUid)
{
    const QVariantMap tap = {{QStringLiteral("uid"), tapUid}, {QStringLiteral("drift"), 0}};
    return {{QStringLiteral("name"), QStringLiteral("Pellar Tap")},
            {QStringLiteral("uid"), QStringLiteral("com.orvalen.pellar.tap.aggregate")},
            {QStringLiteral("master"), tapUid},
            {QStringLiteral("private"), 1},
            {QStringLiteral("tapautostart"), 1},
            {QStringLiteral("taps"), QVariantList{tap}}};
}

} // namespace

AudioCaptureService::AudioCaptureService(AudioHardware& hardware, RunLoop& runLoop)
    : _hardware(hardware)
    , _runLoop(runLoop)
{
}

AudioCaptureService::~AudioCaptureService()
{
    tearDown();
    _samplerQueue.drain();
}

void AudioCaptureService::start()
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, &AudioCaptureService::start, Qt::QueuedConnection);
        return;
    }
    const int status = _hardware.authorizationStatus();
    trace(QStringLiteral("start: isRunning=%1 authStatus=%2").arg(boolText(_isRunning)).arg(status));
    if (_isRunning) {
        beginCapture();
        return;
    }
    switch (status) {
    case AudioHardware::restricted:
    case AudioHardware::denied:
        trace(QStringLiteral("start: denied/restricted"));
        qCCritical(audioLog,
                   "Audio permission denied/restricted - open System Settings → Privacy & Security → "
                   "Microphone → enable Pellar Dev");
        return;
    case AudioHardware::notDetermined:
        trace(QStringLiteral("start: notDetermined → requestAccess"));
        requestAccess();
        return;
    case AudioHardware::authorized:
        trace(QStringLiteral("start: authorized → beginCapture"));
        beginCapture();
        return;
    default:
        trace(QStringLiteral("start: unknown auth status %1").arg(status));
        qCCritical(audioLog, "Unknown audio permission status: %d", status);
    }
}

void AudioCaptureService::requestAccess()
{
    qCInfo(audioLog, "Audio permission undetermined - requesting…");
    const auto granted = [service = QPointer(this), request = ++_request] {
        // Not when capture has been stopped while the user was being asked.
        if (!service.isNull() && service->_request == request) {
            service->beginCapture();
        }
    };
    _hardware.requestAccess([granted](bool isGranted) {
        trace(QStringLiteral("requestAccess callback: granted=%1").arg(boolText(isGranted)));
        if (!isGranted) {
            qCCritical(audioLog, "Audio permission denied - visualizer will use synthetic animation");
            return;
        }
        qCInfo(audioLog, "Audio permission granted");
        QMetaObject::invokeMethod(QCoreApplication::instance(), granted, Qt::QueuedConnection);
    });
}

void AudioCaptureService::stop()
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, &AudioCaptureService::stop, Qt::QueuedConnection);
        return;
    }
    tearDown();
    QMetaObject::invokeMethod(
        this,
        [this] {
            publish({0, 0, 0, 0}, false);
        },
        Qt::QueuedConnection);
}

void AudioCaptureService::beginCapture()
{
    const QList<AudioObjectId> excluded = findProcessIDs();
    trace(QStringLiteral("beginCapture: excluding %1 self-process(es), running=%2")
              .arg(excluded.size())
              .arg(boolText(_isRunning)));
    if (_isRunning && excluded == _lastTapTargetIDs) {
        return;
    }
    stop();
    if (!setupTap(excluded)) {
        trace(QStringLiteral("beginCapture: setupTap FAILED"));
        qCCritical(audioLog, "setupTap failed - falling back to synthetic animation");
        destroyAggregateDevice();
        destroyTap();
        return;
    }
    _lastTapTargetIDs = excluded;
    trace(QStringLiteral("beginCapture: ✓ global tap active sampleRate=%1")
              .arg(decimalText(double{_sampleRate})));
    qCInfo(audioLog, "✓ Audio tap active (sampleRate=%f)", double{_sampleRate});
    _isRunning = true;
    startSampler();
}

QList<AudioObjectId> AudioCaptureService::findProcessIDs() const
{
    QList<AudioObjectId> own;
    QStringList names;
    const QList<AudioObjectId> processes = _hardware.processObjects();
    for (const AudioObjectId process : processes) {
        const std::optional<QString> name = _hardware.bundleId(process);
        if (name && isOwn(*name)) {
            own.append(process);
            names.append(*name);
        }
    }
    trace(QStringLiteral("findProcessIDs: matched %1").arg(listText(names)));
    return own;
}

bool AudioCaptureService::setupTap(const QList<AudioObjectId>& excludedProcesses)
{
    if (!createTap(excludedProcesses)) {
        return false;
    }
    const std::optional<QString> uid = readTapUid();
    if (!uid) {
        qCCritical(audioLog, "Could not read tap UID");
        return false;
    }
    qCInfo(audioLog, "Tap UID: %s", qUtf8Printable(*uid));
    if (!createAggregateDevice(*uid)) {
        return false;
    }
    _sampleRate = static_cast<float>(_hardware.nominalSampleRate(_aggregateID).value_or(defaultSampleRate));
    return startDevice();
}

bool AudioCaptureService::createTap(const QList<AudioObjectId>& excludedProcesses)
{
    const auto tap = _hardware.createProcessTap({.excludedProcesses = excludedProcesses});
    if (!tap.isUsable()) {
        qCCritical(audioLog, "AudioHardwareCreateProcessTap failed: status=%d", tap.status);
        return false;
    }
    _tapID = tap.id;
    qCInfo(audioLog, "Created tap id=%u", tap.id);
    return true;
}

std::optional<QString> AudioCaptureService::readTapUid() const
{
    const std::optional<QString> uid = _hardware.tapUid(_tapID);
    return uid ? uid : _hardware.deviceUid(_tapID);
}

bool AudioCaptureService::createAggregateDevice(const QString& tapUid)
{
    const auto device = _hardware.createAggregateDevice(aggregateDescription(tapUid));
    if (!device.isUsable()) {
        qCCritical(audioLog, "AudioHardwareCreateAggregateDevice failed: status=%d", device.status);
        return false;
    }
    _aggregateID = device.id;
    qCInfo(audioLog, "Created aggregate device id=%u", device.id);
    return true;
}

bool AudioCaptureService::startDevice()
{
    const auto proc = _hardware.createIOProc(_aggregateID, &AudioCaptureService::audioIOProc, this);
    if (!proc.isUsable()) {
        qCCritical(audioLog, "AudioDeviceCreateIOProcID failed: status=%d", proc.status);
        return false;
    }
    _ioProcID = proc.id;
    observeDevice();
    const int status = _hardware.start(_aggregateID, _ioProcID);
    if (status != 0) {
        qCCritical(audioLog, "AudioDeviceStart failed: status=%d", status);
    }
    return status == 0;
}

void AudioCaptureService::observeDevice()
{
    _isSounding = true;
    _hardware.observeDevice(
        _aggregateID, [service = QPointer(this), session = _session](AudioHardware::DeviceState state) {
            const auto changed = [service, session, state] {
                if (!service.isNull() && service->_session == session) {
                    service->deviceChanged(state);
                }
            };
            QMetaObject::invokeMethod(QCoreApplication::instance(), changed, Qt::QueuedConnection);
        });
}

void AudioCaptureService::deviceChanged(AudioHardware::DeviceState state)
{
    if (state.sampleRate) {
        _sampleRate = static_cast<float>(*state.sampleRate);
    }
    _isSounding = state.isSounding;
    if (!_isSounding) {
        _ring.clear(); // the silence that the device delivered may have been dropped
    }
    if (_isSounding && !_sampler) {
        startSampler();
    }
}

void AudioCaptureService::tearDown()
{
    _sampler.reset();
    ++_session;
    ++_request;
    if (_ioProcID != 0 && _aggregateID != 0) {
        _hardware.stop(_aggregateID, _ioProcID);
        _hardware.destroyIOProc(_aggregateID, _ioProcID);
        _ioProcID = 0;
    }
    destroyAggregateDevice();
    destroyTap();
    _isRunning = false;
    _lastTapTargetIDs.clear();
}

void AudioCaptureService::destroyAggregateDevice()
{
    if (_aggregateID != 0) {
        _hardware.destroyAggregateDevice(std::exchange(_aggregateID, 0));
    }
}

void AudioCaptureService::destroyTap()
{
    if (_tapID != 0) {
        _hardware.destroyProcessTap(std::exchange(_tapID, 0));
    }
}

int AudioCaptureService::audioIOProc(AudioObjectId /*device*/, const AudioTimeStamp* /*now*/,
                                     const AudioBufferList* input, const AudioTimeStamp* /*inputTime*/,
                                     AudioBufferList* /*output*/, const AudioTimeStamp* /*outputTime*/,
                                     void* clientData)
{
    if (clientData != nullptr && input != nullptr) {
        static_cast<AudioCaptureService*>(clientData)->_ring.write(*input);
    }
    return 0;
}

void AudioCaptureService::setPace(int framesPerSecond)
{
    const int framesAtOnce = framesPerSecond > 0
                                 ? std::clamp(samplerRate / framesPerSecond, 1, mostFramesAtOnce)
                                 : mostFramesAtOnce;
    if (framesAtOnce != std::exchange(_framesAtOnce, framesAtOnce) && _sampler) {
        startSampler();
    }
}

void AudioCaptureService::startSampler()
{
    constexpr QueueTimer::Seconds firstFrame{0.05};
    _sampler.reset();
    _sampler = std::make_unique<QueueTimer>(
        _samplerQueue, firstFrame, QueueTimer::Seconds{static_cast<double>(_framesAtOnce) / samplerRate},
        [this, session = _session, frames = _framesAtOnce] { sample(session, frames); });
}

void AudioCaptureService::sample(quint64 session, int frames)
{
    for (int framesBack = frames - 1; framesBack >= 0; --framesBack) {
        sampleAndAnalyze(session, framesBack);
    }
}

void AudioCaptureService::sampleAndAnalyze(quint64 session, int framesBack)
{
    const float rate = _sampleRate;
    _ring.copyNewest(_frame, static_cast<int>(rate / samplerRate) * framesBack);
    const SpectrumAnalyzer::Frame frame = _analyzer.analyze(_frame, rate);
    const Uptime now = _runLoop.uptime();
    if (frame.rms > silenceFloor) {
        _lastNonSilentTime = now;
    }
    const bool isLive = now - _lastNonSilentTime < silenceTimeoutSecs;
    qsizetype ready = 0;
    {
        const std::lock_guard guard(_readyLock);
        _ready.append(
            {.session = session, .bands = {frame.bands.begin(), frame.bands.end()}, .isLive = isLive});
        ready = _ready.size();
    }
    if (ready == mostFramesAtOnce || isLive != std::exchange(_wasLive, isLive)) {
        QMetaObject::invokeMethod(this, &AudioCaptureService::catchUp, Qt::QueuedConnection);
    }
}

void AudioCaptureService::catchUp()
{
    QList<Frame> ready;
    {
        const std::lock_guard guard(_readyLock);
        ready.swap(_ready);
    }
    for (const Frame& frame : ready) {
        if (frame.session == _session) {
            publish(frame.bands, frame.isLive);
            rest();
        }
    }
}

/// With nothing to be heard and the levels come to rest, there is nothing to sample until something sounds.
void AudioCaptureService::rest()
{
    constexpr float restingLevel = 0.001F;
    if (!_isSounding && !_isLive && *std::max_element(_bands.begin(), _bands.end()) < restingLevel) {
        _sampler.reset();
    }
}

void AudioCaptureService::publish(const QList<float>& bands, bool isLive)
{
    _bands = bands;
    Q_EMIT bandsPublished(_bands);
    if (_isLive != isLive) {
        _isLive = isLive;
        Q_EMIT liveChanged(isLive);
    }
}
