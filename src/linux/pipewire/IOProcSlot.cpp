#include "linux/pipewire/IOProcSlot.h"

void IOProcSlot::open(AudioObjectId device, AudioIOProc proc, void* clientData, Changed changed)
{
    const std::lock_guard guard(_lock);
    _device = device;
    _proc = proc;
    _clientData = clientData;
    _changed = std::move(changed);
}

void IOProcSlot::close()
{
    const std::lock_guard guard(_lock);
    _proc = nullptr;
    _changed = nullptr;
}

void IOProcSlot::tell(AudioHardware::DeviceState state)
{
    const std::lock_guard guard(_lock);
    if (_changed) {
        _changed(state);
    }
}

void IOProcSlot::deliver(const float* samples, quint32 frames, AudioTimeStamp now)
{
    const std::unique_lock guard(_lock, std::try_to_lock);
    if (!guard.owns_lock() || _proc == nullptr) {
        return;
    }
    constexpr quint32 channels = 2;
    const AudioBuffer buffer{.channels = channels,
                             .byteSize = static_cast<quint32>(sizeof(float) * frames * channels),
                             .data = samples};
    const AudioBufferList input{.count = 1, .buffers = &buffer};
    _proc(_device, &now, &input, &now, nullptr, nullptr, _clientData);
}
