#pragma once

#include "linux/pipewire/CaptureGraph.h"

#include <pipewire/pipewire.h>

/// A link between two ports, there as long as this object is. It is passive: it does not keep what it hears
/// awake. One that is refused, or that somebody else removes, is not made again. Lives on the PipeWire
/// thread, no longer than the connection.
class GraphLink
{
public:
    GraphLink(pw_core* core, CaptureGraph::Link ports);
    ~GraphLink();
    GraphLink(const GraphLink&) = delete;
    GraphLink& operator=(const GraphLink&) = delete;

private:
    void failed(const char* message) const;

    CaptureGraph::Link _ports;
    pw_proxy* _proxy;
    spa_hook _listener{};
};
