#pragma once

#include "linux/pipewire/DeviceList.h"
#include "linux/pipewire/IOProcSlot.h"
#include "platform/AudioHardware.h"

#include <QMap>

#include <memory>

class PipewireSession;

/// The audio hardware on PipeWire. Processes are known by their process ids, the devices of the system by the
/// ids of their nodes. Taps and the devices that carry them are this object's own; only a started one has a
/// node in the graph, and only one can be started at a time. The connection is made when access is first
/// asked for, or devices are observed. A status is a negative errno.
class PipewireAudioHardware final : public AudioHardware
{
public:
    PipewireAudioHardware();
    ~PipewireAudioHardware() override;

    int authorizationStatus() override;
    void requestAccess(std::function<void(bool isGranted)> completion) override;
    std::optional<QList<AudioObjectId>> devices() const override;
    std::optional<int> outputStreamCount(AudioObjectId device) const override;
    std::optional<QString> deviceName(AudioObjectId device) const override;
    std::optional<AudioObjectId> defaultOutputDevice() const override;
    int setDefaultOutputDevice(AudioObjectId device) override;
    void observeDevices(std::function<void()> changed) override;
    QList<AudioObjectId> processObjects() const override;
    std::optional<QString> bundleId(AudioObjectId process) const override;
    Created<AudioObjectId> createProcessTap(const ProcessTapDescription& description) override;
    int destroyProcessTap(AudioObjectId tap) override;
    std::optional<QString> tapUid(AudioObjectId tap) const override;
    std::optional<QString> deviceUid(AudioObjectId device) const override;
    Created<AudioObjectId> createAggregateDevice(const QVariantMap& description) override;
    int destroyAggregateDevice(AudioObjectId device) override;
    std::optional<double> nominalSampleRate(AudioObjectId device) const override;
    Created<AudioIOProcId> createIOProc(AudioObjectId device, AudioIOProc proc, void* clientData) override;
    int destroyIOProc(AudioObjectId device, AudioIOProcId proc) override;
    void observeDevice(AudioObjectId device, std::function<void(DeviceState state)> changed) override;
    int start(AudioObjectId device, AudioIOProcId proc) override;
    int stop(AudioObjectId device, AudioIOProcId proc) override;

private:
    struct Device {
        QString uid;
        AudioObjectId tap = 0;
        AudioIOProcId procId = 0;
        AudioIOProc proc = nullptr;
        void* clientData = nullptr;
        IOProcSlot::Changed changed = {};
    };
    Device* find(AudioObjectId device, AudioIOProcId proc);
    PipewireSession& session();
    std::optional<DeviceList::Device> systemDevice(AudioObjectId device) const;

    QMap<AudioObjectId, ProcessTapDescription> _taps;
    QMap<AudioObjectId, Device> _devices;
    quint32 _lastId = 0x8000'0000; ///< beyond the ids of the graph, which are given anew
    AudioObjectId _startedDevice = 0;
    std::shared_ptr<IOProcSlot> _slot = std::make_shared<IOProcSlot>();
    std::unique_ptr<PipewireSession> _session; ///< from the first request on
};
