#pragma once

#include "platform/AudioHardware.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <set>

/// The part of the sound graph that a capture looks at, and the links that it calls for: from every stream
/// that is played somewhere, but those of some processes, to the two inputs of a capture node.
class CaptureGraph
{
public:
    using Id = quint32; ///< of a client, node or port

    struct Link {
        Id outputPort;
        Id inputPort;
        // NOLINTNEXTLINE(modernize-use-nullptr): of clang-tidy 14
        friend auto operator<=>(const Link&, const Link&) = default;
    };

    /// What a client says of itself. A process can be several clients.
    void setClient(Id client, AudioObjectId process, const QString& bundleId);

    /// A stream that plays sound. Without a client it is nobody's and always heard.
    void addStream(Id node, std::optional<Id> client);

    /// A node that captures; nothing is played on it.
    void addCapture(Id node) { _captures.insert(node); }

    /// Anybody's link from one node to another.
    void addLink(Id link, Id outputNode, Id inputNode);

    /// A port of any node; `channel` as the graph writes it, "FL" or "MONO".
    void addPort(Id port, Id node, bool isInput, const QString& channel);
    void remove(Id id);

    /// The processes that are known to the graph, with their identifiers.
    QMap<AudioObjectId, QString> processes() const;

    /// The nodes that something to be heard is played on. Streams of clients that have not yet said who they
    /// are do not count.
    std::set<Id> sinks(const QSet<AudioObjectId>& excludedProcesses) const;

    /// Whether the node is there still.
    bool hasSink(Id node) const;

    /// From the streams on one of the sinks to the node that captures there. Channels of the left and of the
    /// right go to their side, all others to both.
    std::set<Link> links(Id captureNode, Id sink, const QSet<AudioObjectId>& excludedProcesses) const;

private:
    struct Client {
        AudioObjectId process;
        QString bundleId;
    };
    struct Port {
        Id node;
        bool isInput;
        QString channel;
    };
    struct Connection {
        Id outputNode;
        Id inputNode;
    };
    bool isHeard(Id node, const QSet<AudioObjectId>& excludedProcesses) const;
    std::optional<Id> sinkOf(Id stream) const;

    QMap<Id, Client> _clients;
    QHash<Id, std::optional<Id>> _streams;
    QSet<Id> _captures;
    QMap<Id, Connection> _connections;
    QMap<Id, Port> _ports;
};
