#pragma once

#include "platform/AudioHardware.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <set>

/// The part of the sound graph that a capture looks at, and the links that it calls for: from every stream
/// that is played, but those of some processes, to the capture's two inputs.
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

    /// A port of any node; `channel` as the graph writes it, "FL" or "MONO".
    void addPort(Id port, Id node, bool isInput, const QString& channel);
    void remove(Id id);

    /// The processes that are known to the graph, with their identifiers.
    QMap<AudioObjectId, QString> processes() const;

    /// Channels of the left and of the right go to their side, all others to both. Streams of clients that
    /// have not yet said who they are do not count.
    std::set<Link> links(Id captureNode, const QSet<AudioObjectId>& excludedProcesses) const;

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
    bool isHeard(Id node, const QSet<AudioObjectId>& excludedProcesses) const;

    QMap<Id, Client> _clients;
    QHash<Id, std::optional<Id>> _streams;
    QMap<Id, Port> _ports;
};
