#include "linux/pipewire/CaptureMix.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr float silenceFloor = 1e-4F; // below it no analysis hears anything

} // namespace

CaptureMix::CaptureMix(std::shared_ptr<IOProcSlot> slot) : _slot(std::move(slot)) {}

CaptureMix::Share::Share(std::shared_ptr<CaptureMix> mix) : _mix(std::move(mix))
{
    const std::lock_guard guard(_mix->_lock);
    _mix->_shares.push_back(this);
}

CaptureMix::Share::~Share()
{
    const std::lock_guard guard(_mix->_lock);
    std::erase(_mix->_shares, this);
}

void CaptureMix::Share::add(const Sound& sound)
{
    _mix->_cycles.fetch_add(1, std::memory_order_relaxed);
    _mix->_rate.store(sound.rate, std::memory_order_relaxed);
    const std::unique_lock guard(_mix->_lock, std::try_to_lock);
    if (!guard.owns_lock()) {
        return;
    }
    for (quint32 done = 0; done < sound.frames; done += chunkFrames) {
        const quint32 count = std::min(chunkFrames, sound.frames - done);
        _end = std::max(_end, _mix->_begin);
        for (quint32 i = 0; i < count; ++i) {
            auto& [left, right] = _mix->_frames[(_end + i) % capacity];
            left += sound.left != nullptr ? sound.left[done + i] : 0;
            right += sound.right != nullptr ? sound.right[done + i] : 0;
        }
        _end += count;
        _mix->_end = std::max(_mix->_end, _end);
        _mix->handOn(sound.now);
    }
}

/// As far as every share has come, but for those whose driver seems to rest.
void CaptureMix::handOn(AudioTimeStamp now)
{
    quint64 ready = _end;
    for (const Share* const share : _shares) {
        if (share->_end + patience > _end) {
            ready = std::min(ready, share->_end);
        }
    }
    while (_begin < ready) {
        const quint64 at = _begin % capacity;
        const auto count = std::min<quint64>(ready - _begin, capacity - at);
        const auto first = _frames.begin() + static_cast<qptrdiff>(at);
        const auto last = first + static_cast<qptrdiff>(count);
        const bool isLoud = std::any_of(first, last, [](const Frame& frame) {
            return std::abs(frame[0]) > silenceFloor || std::abs(frame[1]) > silenceFloor;
        });
        if (isLoud) {
            _isLoud.store(true, std::memory_order_relaxed);
        }
        _slot->deliver(first->data(), static_cast<quint32>(count), now);
        std::fill(first, last, Frame{});
        _begin += count;
    }
}

void CaptureMix::silence()
{
    const std::lock_guard guard(_lock);
    _frames.fill({});
    _begin = _end;
    _isLoud = false;
    _slot->deliver(_frames.front().data(), capacity, 0);
}

CaptureMix::Report CaptureMix::report()
{
    const quint32 cycles = _cycles.load(std::memory_order_relaxed);
    const quint32 rate = _rate.load(std::memory_order_relaxed);
    return {.isLoud = _isLoud.exchange(false, std::memory_order_relaxed),
            .isStanding = cycles == std::exchange(_reportedCycles, cycles),
            .sampleRate = rate > 0 ? std::optional(static_cast<double>(rate)) : std::nullopt};
}
