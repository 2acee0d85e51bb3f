#pragma once

#include "linux/pipewire/IOProcSlot.h"
#include "linux/pipewire/PipewireLoop.h"

#include <pipewire/filter.h>

#include <array>
#include <atomic>
#include <functional>
#include <memory>

/// The node that hears: two inputs, left and right, to which others are linked. It takes what the graph mixes
/// there as it is, at the graph's own rate, and never asks the graph to run. Lives on the PipeWire thread.
class CaptureStream
{
public:
    /// `changed` is called when the node is in the graph, and when it has failed.
    CaptureStream(PipewireLoop& loop, pw_core* core, std::shared_ptr<IOProcSlot> slot,
                  std::function<void()> changed);
    ~CaptureStream();
    CaptureStream(const CaptureStream&) = delete;
    CaptureStream& operator=(const CaptureStream&) = delete;

    /// The node's id in the graph, once it is there.
    std::optional<quint32> nodeId() const;

    /// Whether it is not, and will not be, in the graph.
    bool hasFailed() const;

private:
    struct Destroy {
        void operator()(pw_filter* filter) const;
    };
    static constexpr quint32 chunkFrames = 1024;
    using Chunk = std::array<float, 2 * static_cast<std::size_t>(chunkFrames)>;

    bool connect();
    void* addInput(const char* name, const char* channel);
    void stateChanged(pw_filter_state state, const char* error);
    void tell();
    void process(const spa_io_position& position);
    void check();
    void setRunning(bool isRunning);
    void deliverSilence();

    std::shared_ptr<IOProcSlot> _slot;
    std::function<void()> _changed = [] {};
    std::unique_ptr<pw_filter, Destroy> _filter;
    spa_hook _listener{};
    void* _left = nullptr;
    void* _right = nullptr;
    Chunk _chunk{}; ///< the real-time thread's own

    // What the real-time thread leaves for the other one.
    std::atomic<quint32> _cycles = 0;  ///< of the graph
    std::atomic<quint32> _rate = 0;    ///< Hz
    std::atomic<bool> _isLoud = false; ///< since it was last looked at

    quint32 _seenCycles = 0;
    bool _isSilent = false;
    AudioHardware::DeviceState _told;
    PipewireLoop::Timer _timer;
};
