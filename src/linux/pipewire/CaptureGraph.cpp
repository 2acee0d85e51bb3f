#include "linux/pipewire/CaptureGraph.h"

#include <algorithm>

namespace {

enum class Side { left, right, both };

Side sideOf(const QString& channel)
{
    static const QSet<QString> left = {QStringLiteral("FL"),  QStringLiteral("RL"),  QStringLiteral("SL"),
                                       QStringLiteral("FLC"), QStringLiteral("TFL"), QStringLiteral("TRL"),
                                       QStringLiteral("FLW"), QStringLiteral("FLH")};
    static const QSet<QString> right = {QStringLiteral("FR"),  QStringLiteral("RR"),  QStringLiteral("SR"),
                                        QStringLiteral("FRC"), QStringLiteral("TFR"), QStringLiteral("TRR"),
                                        QStringLiteral("FRW"), QStringLiteral("FRH")};
    if (left.contains(channel)) {
        return Side::left;
    }
    return right.contains(channel) ? Side::right : Side::both;
}

bool meet(Side a, Side b)
{
    return a == b || a == Side::both || b == Side::both;
}

} // namespace

void CaptureGraph::setClient(Id client, AudioObjectId process, const QString& bundleId)
{
    _clients.insert(client, {.process = process, .bundleId = bundleId});
}

void CaptureGraph::addStream(Id node, std::optional<Id> client)
{
    _streams.insert(node, client);
}

void CaptureGraph::addLink(Id link, Id outputNode, Id inputNode)
{
    _connections.insert(link, {.outputNode = outputNode, .inputNode = inputNode});
}

void CaptureGraph::addPort(Id port, Id node, bool isInput, const QString& channel)
{
    _ports.insert(port, {.node = node, .isInput = isInput, .channel = channel});
}

void CaptureGraph::remove(Id id)
{
    _clients.remove(id);
    _streams.remove(id);
    _captures.remove(id);
    _connections.remove(id);
    _ports.remove(id);
}

QMap<AudioObjectId, QString> CaptureGraph::processes() const
{
    QMap<AudioObjectId, QString> processes;
    for (const Client& client : _clients) {
        QString& bundleId = processes[client.process];
        if (bundleId.isEmpty()) {
            bundleId = client.bundleId;
        }
    }
    return processes;
}

std::set<CaptureGraph::Id> CaptureGraph::sinks(const QSet<AudioObjectId>& excludedProcesses) const
{
    std::set<Id> sinks;
    for (auto stream = _streams.begin(); stream != _streams.end(); ++stream) {
        const std::optional<Id> sink = sinkOf(stream.key());
        if (sink && isHeard(stream.key(), excludedProcesses)) {
            sinks.insert(*sink);
        }
    }
    return sinks;
}

/// The first that came, if it is linked to several: those share a driver already.
std::optional<CaptureGraph::Id> CaptureGraph::sinkOf(Id stream) const
{
    std::optional<Id> sink;
    for (const auto& [outputNode, inputNode] : _connections) {
        if (outputNode == stream && !_captures.contains(inputNode)) {
            sink = std::min(sink.value_or(inputNode), inputNode);
        }
    }
    return sink;
}

bool CaptureGraph::hasSink(Id node) const
{
    return std::any_of(_ports.begin(), _ports.end(),
                       [node](const Port& port) { return port.isInput && port.node == node; });
}

std::set<CaptureGraph::Link> CaptureGraph::links(Id captureNode, Id sink,
                                                 const QSet<AudioObjectId>& excludedProcesses) const
{
    QMap<Id, Side> inputs;
    for (auto port = _ports.begin(); port != _ports.end(); ++port) {
        if (port->isInput && port->node == captureNode) {
            inputs.insert(port.key(), sideOf(port->channel));
        }
    }
    std::set<Link> links;
    for (auto port = _ports.begin(); port != _ports.end(); ++port) {
        if (port->isInput || !isHeard(port->node, excludedProcesses) || sinkOf(port->node) != sink) {
            continue;
        }
        for (auto input = inputs.begin(); input != inputs.end(); ++input) {
            if (meet(sideOf(port->channel), *input)) {
                links.insert({.outputPort = port.key(), .inputPort = input.key()});
            }
        }
    }
    return links;
}

bool CaptureGraph::isHeard(Id node, const QSet<AudioObjectId>& excludedProcesses) const
{
    const auto stream = _streams.constFind(node);
    if (stream == _streams.constEnd()) {
        return false;
    }
    if (!*stream) {
        return true;
    }
    const auto client = _clients.constFind(**stream);
    return client != _clients.constEnd() && !excludedProcesses.contains(client->process);
}
