#pragma once

#include "linux/pipewire/CaptureGraph.h"
#include "linux/pipewire/CaptureStream.h"
#include "linux/pipewire/GraphLink.h"
#include "linux/pipewire/PipewireLoop.h"

#include <map>
#include <memory>

/// A capture at work: a node for every sink that something to be heard is played on, linked to the streams
/// there. One node for several sinks would put them under one driver. Lives on the PipeWire thread.
class Capture
{
public:
    /// `changed` is called, never within `update`, when that should be called again.
    Capture(PipewireLoop& loop, const QSet<AudioObjectId>& excludedProcesses,
            std::shared_ptr<IOProcSlot> slot, std::function<void()> changed);
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    /// Brings nodes and links in line with the graph.
    void update(pw_core* core, const CaptureGraph& graph);

    /// Drops them all, as when the connection is lost.
    void clear();

private:
    using Id = CaptureGraph::Id;
    struct Node {
        std::unique_ptr<CaptureStream> stream;
        std::map<CaptureGraph::Link, std::unique_ptr<GraphLink>> links;
    };

    void watch();
    void check();
    void tell(const CaptureMix::Report& report);
    void retry();

    QSet<AudioObjectId> _excludedProcesses;
    std::shared_ptr<IOProcSlot> _slot;
    std::shared_ptr<CaptureMix> _mix;
    std::function<void()> _changed;
    std::function<void()> _streamChanged;
    std::map<Id, Node> _nodes; ///< by the sink
    bool _isRunning = true;
    bool _isSilent = false;
    AudioHardware::DeviceState _told;
    PipewireLoop::Timer _checkTimer;
    PipewireLoop::Timer _retryTimer;
    bool _isRetryDue = false;
};
