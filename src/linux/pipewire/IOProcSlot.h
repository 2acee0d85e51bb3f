#pragma once

#include "platform/AudioHardware.h"

#include <mutex>

/// The callbacks that take a device's sound and its reports. Once it is closed, nothing is called any more,
/// by whatever thread; a real-time thread that finds it just being changed drops its sound instead of
/// waiting.
class IOProcSlot
{
public:
    using Changed = std::function<void(AudioHardware::DeviceState state)>;

    void open(AudioObjectId device, AudioIOProc proc, void* clientData, Changed changed);
    void close();

    /// Not real-time.
    void tell(AudioHardware::DeviceState state);

    /// Hands over interleaved stereo frames, at most as many as a buffer can hold. Real-time.
    void deliver(const float* samples, quint32 frames, AudioTimeStamp now);

private:
    std::mutex _lock;
    AudioObjectId _device = 0;
    AudioIOProc _proc = nullptr;
    void* _clientData = nullptr;
    Changed _changed;
};
