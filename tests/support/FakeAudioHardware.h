#pragma once

#include "platform/AudioHardware.h"

#include <QMap>
#include <QStringList>

#include <array>
#include <utility>

/// Audio hardware without devices of the system: it makes the sound that a test plays on it, fails where a
/// test wants it to, and remembers what it was told.
class FakeAudioHardware final : public AudioHardware
{
public:
    int authorizationStatus() override { return authorization; }
    void requestAccess(std::function<void(bool)> completion) override { request = std::move(completion); }

    std::optional<QList<AudioObjectId>> devices() const override { return std::nullopt; }
    std::optional<int> outputStreamCount(AudioObjectId /*device*/) const override { return std::nullopt; }
    std::optional<QString> deviceName(AudioObjectId /*device*/) const override { return std::nullopt; }
    std::optional<AudioObjectId> defaultOutputDevice() const override { return std::nullopt; }
    int setDefaultOutputDevice(AudioObjectId /*device*/) override { return 0; }
    void observeDevices(std::function<void()> /*changed*/) override {}

    QList<AudioObjectId> processObjects() const override { return processes.keys(); }
    std::optional<QString> bundleId(AudioObjectId process) const override { return processes.value(process); }

    Created<AudioObjectId> createProcessTap(const ProcessTapDescription& description) override
    {
        tap = description;
        return created("tap", tapId);
    }
    int destroyProcessTap(AudioObjectId id) override { return note("-tap", id); }
    std::optional<QString> tapUid(AudioObjectId /*tap*/) const override { return uid; }
    std::optional<QString> deviceUid(AudioObjectId /*device*/) const override { return std::nullopt; }

    Created<AudioObjectId> createAggregateDevice(const QVariantMap& description) override
    {
        aggregate = description;
        return created("device", deviceId);
    }
    int destroyAggregateDevice(AudioObjectId device) override { return note("-device", device); }
    std::optional<double> nominalSampleRate(AudioObjectId /*device*/) const override { return rate; }

    Created<AudioIOProcId> createIOProc(AudioObjectId /*device*/, AudioIOProc newProc, void* data) override
    {
        proc = newProc;
        client = data;
        return created("proc", AudioIOProcId{procId});
    }
    int destroyIOProc(AudioObjectId device, AudioIOProcId /*id*/) override { return note("-proc", device); }
    void observeDevice(AudioObjectId /*device*/, std::function<void(DeviceState)> changed) override
    {
        deviceChanged = std::move(changed);
    }
    int start(AudioObjectId device, AudioIOProcId /*id*/) override { return note("start", device); }
    int stop(AudioObjectId device, AudioIOProcId /*id*/) override { return note("stop", device); }

    /// Hands over interleaved samples as the real-time thread would.
    void play(const QList<float>& samples, quint32 channels) const
    {
        const AudioBuffer buffer{.channels = channels,
                                 .byteSize = static_cast<quint32>(samples.size() * sizeof(float)),
                                 .data = samples.constData()};
        const AudioBufferList list{.count = 1, .buffers = &buffer};
        proc(deviceId, nullptr, &list, nullptr, nullptr, nullptr, client);
    }

    /// What was called since the last time.
    QString takeCalls() { return std::exchange(calls, {}).join(u' '); }

    static constexpr AudioObjectId tapId = 7;
    static constexpr AudioObjectId deviceId = 8;
    static constexpr AudioIOProcId procId = 9;

    int authorization = authorized;
    std::function<void(bool)> request;
    QMap<AudioObjectId, std::optional<QString>> processes;
    std::optional<QString> uid = QStringLiteral("tap-uid");
    std::optional<double> rate = 44100;
    ProcessTapDescription tap;
    QVariantMap aggregate;
    AudioIOProc proc = nullptr;
    void* client = nullptr;
    std::function<void(DeviceState)> deviceChanged;
    QStringList calls;

private:
    template<typename Id>
    Created<Id> created(const char* call, Id id)
    {
        calls.append(QString::fromUtf8(call));
        return {.status = 0, .id = id};
    }
    int note(const char* call, AudioObjectId /*object*/)
    {
        calls.append(QString::fromUtf8(call));
        return 0;
    }
};
