#pragma once

#include "linux/pipewire/CaptureMix.h"

#include <pipewire/filter.h>

#include <functional>
#include <memory>
#include <optional>

/// A node that hears: two inputs, left and right, to which others are linked. It takes what the graph mixes
/// there as it is, at the graph's own rate, never asks the graph to run, and does not change the latency that
/// players are told. Lives on the PipeWire thread.
class CaptureStream
{
public:
    static constexpr const char* nodeName = "pellar.capture";

    /// `changed` is called when the node is in the graph, when the graph begins or ceases to run it, and when
    /// it has failed; not to destroy it there.
    CaptureStream(pw_core* core, std::shared_ptr<CaptureMix> mix, std::function<void()> changed);
    ~CaptureStream();
    CaptureStream(const CaptureStream&) = delete;
    CaptureStream& operator=(const CaptureStream&) = delete;

    /// The node's id in the graph, once it is there.
    std::optional<quint32> nodeId() const;

    /// Whether the graph runs it. One with nothing to play stands still, and with it this node.
    bool isRunning() const;

    /// Whether it is not, and will not be, in the graph.
    bool hasFailed() const;

private:
    struct Destroy {
        void operator()(pw_filter* filter) const;
    };

    bool connect();
    void* addInput(const char* name, const char* channel);
    void stateChanged(pw_filter_state state, const char* error);
    void process(const spa_io_position& position);

    CaptureMix::Share _share;
    std::function<void()> _changed = [] {};
    std::unique_ptr<pw_filter, Destroy> _filter;
    spa_hook _listener{};
    void* _left = nullptr;
    void* _right = nullptr;
};
