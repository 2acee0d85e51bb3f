#pragma once

#include <QList>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

using AudioObjectId = quint32;  ///< a process, a tap or a device; 0 is none
using AudioIOProcId = quint64;  ///< a registered IO procedure; 0 is none
using AudioTimeStamp = quint64; ///< nanoseconds on the hardware's own clock

struct AudioBuffer {
    quint32 channels = 0; ///< interleaved
    quint32 byteSize = 0;
    const void* data = nullptr; ///< 32-bit float samples
};

struct AudioBufferList {
    quint32 count = 0;
    const AudioBuffer* buffers = nullptr;
};

/// What the hardware calls with every piece of sound, on its real-time thread: it must not wait, allocate or
/// log. Input and output may be null. Gives 0.
using AudioIOProc = int (*)(AudioObjectId device, const AudioTimeStamp* now, const AudioBufferList* input,
                            const AudioTimeStamp* inputTime, AudioBufferList* output,
                            const AudioTimeStamp* outputTime, void* clientData);

/// A stereo tap of all that is played, but for some processes.
struct ProcessTapDescription {
    QList<AudioObjectId> excludedProcesses;
    int muteBehavior = 0; ///< 0: what is tapped is still played
};

/// The system's audio devices and the taps on what processes play. Called on the main thread, which it never
/// holds up. A status is 0 on success; what cannot be read is none.
class AudioHardware
{
public:
    enum Authorization { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

    template<typename Id>
    struct Created {
        int status = 0;
        Id id = 0;
        bool isUsable() const { return status == 0 && id != 0; }
    };

    AudioHardware() = default;
    virtual ~AudioHardware() = default;
    AudioHardware(const AudioHardware&) = delete;
    AudioHardware& operator=(const AudioHardware&) = delete;

    /// An `Authorization`; other numbers are the system's own.
    virtual int authorizationStatus() = 0;

    /// Asks for leave to capture. Calls back once, on any thread.
    virtual void requestAccess(std::function<void(bool isGranted)> completion) = 0;

    /// Every device, in the system's order. None when that cannot be told.
    virtual std::optional<QList<AudioObjectId>> devices() const = 0;

    /// How many streams a device can play; 0 for one that only records.
    virtual std::optional<int> outputStreamCount(AudioObjectId device) const = 0;
    virtual std::optional<QString> deviceName(AudioObjectId device) const = 0;

    virtual std::optional<AudioObjectId> defaultOutputDevice() const = 0;
    virtual int setDefaultOutputDevice(AudioObjectId device) = 0;

    /// Tells, on any thread, when a device has come or gone or another one has become the default. There is
    /// one observer.
    virtual void observeDevices(std::function<void()> changed) = 0;

    /// Every process that can make sound, in a steady order.
    virtual QList<AudioObjectId> processObjects() const = 0;
    virtual std::optional<QString> bundleId(AudioObjectId process) const = 0;

    virtual Created<AudioObjectId> createProcessTap(const ProcessTapDescription& description) = 0;
    virtual int destroyProcessTap(AudioObjectId tap) = 0;
    virtual std::optional<QString> tapUid(AudioObjectId tap) const = 0;
    virtual std::optional<QString> deviceUid(AudioObjectId device) const = 0;

    /// Makes a device that carries the taps which the description lists by their UIDs under "taps".
    virtual Created<AudioObjectId> createAggregateDevice(const QVariantMap& description) = 0;
    virtual int destroyAggregateDevice(AudioObjectId device) = 0;
    virtual std::optional<double> nominalSampleRate(AudioObjectId device) const = 0; ///< Hz

    /// `clientData` is handed to every call. None follows once `stop` has returned.
    virtual Created<AudioIOProcId> createIOProc(AudioObjectId device, AudioIOProc proc, void* clientData) = 0;
    virtual int destroyIOProc(AudioObjectId device, AudioIOProcId proc) = 0;

    struct DeviceState {
        bool isSounding = true;           ///< else it delivers at most silence, and may deliver nothing
        std::optional<double> sampleRate; ///< Hz; none when it is not known

        friend bool operator==(const DeviceState&, const DeviceState&) = default;
    };

    /// Reports, on any thread, every change of a started device soon after it happens, and nothing once
    /// `stop` has returned. A device without a report counts as sounding.
    virtual void observeDevice(AudioObjectId device, std::function<void(DeviceState state)> changed) = 0;

    virtual int start(AudioObjectId device, AudioIOProcId proc) = 0;
    virtual int stop(AudioObjectId device, AudioIOProcId proc) = 0;
};
