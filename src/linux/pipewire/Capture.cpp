#include "linux/pipewire/Capture.h"

#include <algorithm>

namespace {

// Longer than the longest cycle of the graph: 8192 frames at 44.1 kHz are 0.19 s.
constexpr double checkInterval = 0.25; // seconds
constexpr double retryInterval = 0.5;  // seconds

} // namespace

Capture::Capture(PipewireLoop& loop, const QSet<AudioObjectId>& excludedProcesses,
                 std::shared_ptr<IOProcSlot> slot, std::function<void()> changed)
    : _excludedProcesses(excludedProcesses)
    , _slot(std::move(slot))
    , _mix(std::make_shared<CaptureMix>(_slot))
    , _changed(std::move(changed))
    // A node may report a change from within a callback, where it cannot be destroyed.
    , _streamChanged([&loop, changed = _changed] { loop.post(changed); })
    , _checkTimer(loop, [this] { check(); })
    , _retryTimer(loop, [this] { retry(); })
{
    watch();
}

Capture::~Capture()
{
    clear();
}

void Capture::clear()
{
    _nodes.clear();
    watch();
}

void Capture::update(pw_core* core, const CaptureGraph& graph)
{
    const std::set<Id> sinks = graph.sinks(_excludedProcesses);
    std::erase_if(_nodes, [&](const auto& node) { return !graph.hasSink(node.first); });
    for (const Id sink : sinks) {
        Node& node = _nodes[sink];
        if (!node.stream) {
            node.stream = std::make_unique<CaptureStream>(core, _mix, _streamChanged);
        }
    }
    for (auto& [sink, node] : _nodes) {
        if (node.stream->hasFailed() && !std::exchange(_isRetryDue, true)) {
            _retryTimer.fireAfter(retryInterval);
        }
        const std::optional<Id> id = node.stream->nodeId();
        const auto wanted = id ? graph.links(*id, sink, _excludedProcesses) : std::set<CaptureGraph::Link>();
        std::erase_if(node.links, [&](const auto& link) { return !wanted.contains(link.first); });
        for (const CaptureGraph::Link& link : wanted) {
            if (!node.links.contains(link)) {
                node.links[link] = std::make_unique<GraphLink>(core, link);
            }
        }
    }
    watch();
}

void Capture::retry()
{
    _isRetryDue = false;
    std::erase_if(_nodes, [](const auto& node) { return node.second.stream->hasFailed(); });
    _changed();
}

/// While no node runs, there is nothing to be looked at; to the listener, that is silence.
void Capture::watch()
{
    const bool isRunning = std::any_of(_nodes.begin(), _nodes.end(),
                                       [](const auto& node) { return node.second.stream->isRunning(); });
    if (isRunning == std::exchange(_isRunning, isRunning)) {
        return;
    }
    if (isRunning) {
        _checkTimer.fireEvery(checkInterval);
    } else {
        _checkTimer.cancel();
        _mix->silence();
        tell(_mix->report());
    }
}

/// A graph that should run may stand still, too, as when its sink is being changed; and one that runs may
/// play silence.
void Capture::check()
{
    const CaptureMix::Report report = _mix->report();
    if (report.isStanding && !std::exchange(_isSilent, report.isStanding)) {
        _mix->silence();
    }
    _isSilent = report.isStanding;
    tell(report);
}

void Capture::tell(const CaptureMix::Report& report)
{
    const AudioHardware::DeviceState state{.isSounding = report.isLoud, .sampleRate = report.sampleRate};
    if (state != std::exchange(_told, state)) {
        _slot->tell(state);
    }
}
