#pragma once

#include "platform/AudioHardware.h"
#include "platform/linux/pipewire/IOProcSlot.h"

#include <QMap>

#include <memory>

class PipewireSession;

/// The audio hardware on PipeWire. Processes are known by their process ids. Taps and devices are this
/// object's own; only a started device has a node in the graph, and only one can be started at a time. The
/// connection is made when access is first asked for. A status is a negative errno.
class PipewireAudioHardware final : public AudioHardware
{
public:
    PipewireAudioHardware();
    ~PipewireAudioHardware() override;

    int authorizationStatus() override;
    void requestAccess(std::function<void(bool isGranted)> completion) override;
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
    void observeRunning(AudioObjectId device, std::function<void(bool isRunning)> changed) override;
    int start(AudioObjectId device, AudioIOProcId proc) override;
    int stop(AudioObjectId device, AudioIOProcId proc) override;

private:
    struct Device {
        QString uid;
        AudioObjectId tap = 0;
        AudioIOProcId procId = 0;
        AudioIOProc proc = nullptr;
        void* clientData = nullptr;
        IOProcSlot::RunningChanged runningChanged = {};
    };
    Device* find(AudioObjectId device, AudioIOProcId proc);

    QMap<AudioObjectId, ProcessTapDescription> _taps;
    QMap<AudioObjectId, Device> _devices;
    quint32 _lastId = 0;
    AudioObjectId _startedDevice = 0;
    std::shared_ptr<IOProcSlot> _slot = std::make_shared<IOProcSlot>();
    std::unique_ptr<PipewireSession> _session; ///< from the first request on
};
