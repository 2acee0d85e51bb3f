#pragma once

#include "platform/AudioHardware.h"

#include <mutex>

/// Where the sound of a device goes. Once it is closed, the procedure is not called any more, by whatever
/// thread; a thread that finds it just being changed drops its sound instead of waiting.
class IOProcSlot
{
public:
    void open(AudioObjectId device, AudioIOProc proc, void* clientData);
    void close();

    /// Hands over interleaved stereo frames, at most as many as a buffer can hold. Real-time.
    void deliver(const float* samples, quint32 frames, AudioTimeStamp now);

private:
    std::mutex _lock;
    AudioObjectId _device = 0;
    AudioIOProc _proc = nullptr;
    void* _clientData = nullptr;
};
