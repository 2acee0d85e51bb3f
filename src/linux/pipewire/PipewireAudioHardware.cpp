#include "linux/pipewire/PipewireAudioHardware.h"

#include "linux/pipewire/PipewireSession.h"

#include <QCoreApplication>

#include <cerrno>

namespace {

const QString ownBundleId = QStringLiteral("com.orvalen.pellar");

AudioObjectId ownProcess()
{
    return static_cast<AudioObjectId>(QCoreApplication::applicationPid());
}

QString uidOfTap(AudioObjectId tap)
{
    return QStringLiteral("com.orvalen.pellar.tap.%1").arg(tap);
}

} // namespace

PipewireAudioHardware::PipewireAudioHardware() = default;

PipewireAudioHardware::~PipewireAudioHardware()
{
    _slot->close();
}

int PipewireAudioHardware::authorizationStatus()
{
    if (!_session) {
        return notDetermined;
    }
    const Authorization status = _session->authorization();
    if (status == denied) {
        _session->connect([](bool) {}); // the answer may be another one the next time
    }
    return status;
}

void PipewireAudioHardware::requestAccess(std::function<void(bool isGranted)> completion)
{
    session().connect(completion);
}

std::optional<QList<AudioObjectId>> PipewireAudioHardware::devices() const
{
    if (!_session) {
        return std::nullopt;
    }
    QList<AudioObjectId> ids;
    const DeviceList list = _session->devices();
    for (const DeviceList::Device& device : list.devices()) {
        ids.append(device.id);
    }
    return ids;
}

std::optional<int> PipewireAudioHardware::outputStreamCount(AudioObjectId device) const
{
    const auto found = systemDevice(device);
    return found ? std::optional(found->isOutput ? 1 : 0) : std::nullopt;
}

std::optional<QString> PipewireAudioHardware::deviceName(AudioObjectId device) const
{
    const auto found = systemDevice(device);
    return found && !found->name.isEmpty() ? std::optional(found->name) : std::nullopt;
}

std::optional<AudioObjectId> PipewireAudioHardware::defaultOutputDevice() const
{
    const auto found = _session ? _session->devices().output(_session->defaultSink()) : std::nullopt;
    return found ? std::optional(found->id) : std::nullopt;
}

int PipewireAudioHardware::setDefaultOutputDevice(AudioObjectId device)
{
    const auto found = systemDevice(device);
    if (!found || !found->isOutput) {
        return -ENOENT;
    }
    _session->wishForSink(found->uid);
    return 0;
}

void PipewireAudioHardware::observeDevices(std::function<void()> changed)
{
    session().watchDevices(std::move(changed));
}

QList<AudioObjectId> PipewireAudioHardware::processObjects() const
{
    auto processes = _session ? _session->processes() : QMap<AudioObjectId, QString>();
    processes.insert(ownProcess(), ownBundleId); // also while there is no connection
    return processes.keys();
}

std::optional<QString> PipewireAudioHardware::bundleId(AudioObjectId process) const
{
    if (process == ownProcess()) {
        return ownBundleId;
    }
    const QString name = _session ? _session->processes().value(process) : QString();
    return name.isEmpty() ? std::nullopt : std::optional(name);
}

AudioHardware::Created<AudioObjectId>
PipewireAudioHardware::createProcessTap(const ProcessTapDescription& description)
{
    if (!_session || _session->authorization() != authorized) {
        return {.status = -ENOTCONN};
    }
    if (description.muteBehavior != 0) {
        return {.status = -ENOTSUP};
    }
    _taps.insert(++_lastId, description);
    return {.id = _lastId};
}

int PipewireAudioHardware::destroyProcessTap(AudioObjectId tap)
{
    return _taps.remove(tap) > 0 ? 0 : -ENOENT;
}

std::optional<QString> PipewireAudioHardware::tapUid(AudioObjectId tap) const
{
    return _taps.contains(tap) ? std::optional(uidOfTap(tap)) : std::nullopt;
}

std::optional<QString> PipewireAudioHardware::deviceUid(AudioObjectId device) const
{
    if (const auto found = _devices.constFind(device); found != _devices.constEnd()) {
        return found->uid;
    }
    const auto found = systemDevice(device);
    return found && !found->uid.isEmpty() ? std::optional(found->uid) : std::nullopt;
}

AudioHardware::Created<AudioObjectId>
PipewireAudioHardware::createAggregateDevice(const QVariantMap& description)
{
    const QVariantList listed = description.value(QStringLiteral("taps")).toList();
    const QString uid = listed.value(0).toMap().value(QStringLiteral("uid")).toString();
    for (auto tap = _taps.keyBegin(); tap != _taps.keyEnd(); ++tap) {
        if (listed.size() == 1 && uidOfTap(*tap) == uid) {
            const AudioObjectId id = ++_lastId;
            _devices.insert(id, {.uid = description.value(QStringLiteral("uid")).toString(), .tap = *tap});
            return {.id = id};
        }
    }
    return {.status = -ENOENT};
}

int PipewireAudioHardware::destroyAggregateDevice(AudioObjectId device)
{
    if (_startedDevice == device) {
        stop(device, _devices.value(device).procId);
    }
    return _devices.remove(device) > 0 ? 0 : -ENOENT;
}

std::optional<double> PipewireAudioHardware::nominalSampleRate(AudioObjectId device) const
{
    return _session && _devices.contains(device) ? _session->sampleRate() : std::nullopt;
}

AudioHardware::Created<AudioIOProcId> PipewireAudioHardware::createIOProc(AudioObjectId device,
                                                                          AudioIOProc proc, void* clientData)
{
    const auto found = _devices.find(device);
    if (found == _devices.end() || proc == nullptr) {
        return {.status = -EINVAL};
    }
    if (found->procId != 0) {
        return {.status = -EBUSY};
    }
    found->procId = ++_lastId;
    found->proc = proc;
    found->clientData = clientData;
    return {.id = found->procId};
}

int PipewireAudioHardware::destroyIOProc(AudioObjectId device, AudioIOProcId proc)
{
    Device* const found = find(device, proc);
    if (found == nullptr) {
        return -ENOENT;
    }
    stop(device, proc);
    found->procId = 0;
    return 0;
}

void PipewireAudioHardware::observeDevice(AudioObjectId device,
                                          std::function<void(DeviceState state)> changed)
{
    if (const auto found = _devices.find(device); found != _devices.end()) {
        found->changed = std::move(changed);
    }
}

int PipewireAudioHardware::start(AudioObjectId device, AudioIOProcId proc)
{
    const Device* const found = find(device, proc);
    if (found == nullptr || !_taps.contains(found->tap)) {
        return -ENOENT;
    }
    if (_startedDevice != 0) {
        return -EBUSY;
    }
    if (_session->authorization() != authorized) {
        return -ENOTCONN;
    }
    const QList<AudioObjectId> excluded = _taps.value(found->tap).excludedProcesses;
    _startedDevice = device;
    _slot->open(device, found->proc, found->clientData, found->changed);
    _session->startCapture(QSet<AudioObjectId>(excluded.begin(), excluded.end()), _slot);
    return 0;
}

int PipewireAudioHardware::stop(AudioObjectId device, AudioIOProcId proc)
{
    if (find(device, proc) == nullptr || _startedDevice != device) {
        return -ENOENT;
    }
    _startedDevice = 0;
    _slot->close();
    _session->stopCapture();
    return 0;
}

PipewireSession& PipewireAudioHardware::session()
{
    if (!_session) {
        _session = std::make_unique<PipewireSession>();
    }
    return *_session;
}

std::optional<DeviceList::Device> PipewireAudioHardware::systemDevice(AudioObjectId device) const
{
    return _session ? _session->devices().withId(device) : std::nullopt;
}

PipewireAudioHardware::Device* PipewireAudioHardware::find(AudioObjectId device, AudioIOProcId proc)
{
    const auto found = _devices.find(device);
    return found != _devices.end() && proc != 0 && found->procId == proc ? &*found : nullptr;
}
