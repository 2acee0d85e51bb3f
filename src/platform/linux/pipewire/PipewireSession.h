#pragma once

#include "platform/linux/pipewire/CaptureGraph.h"
#include "platform/linux/pipewire/CaptureStream.h"
#include "platform/linux/pipewire/ClientWatch.h"
#include "platform/linux/pipewire/GraphLink.h"
#include "platform/linux/pipewire/IOProcSlot.h"
#include "platform/linux/pipewire/PipewireLoop.h"

#include <pipewire/pipewire.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// One program's connection with the sound server: it keeps up with the graph, and while a capture is wanted
/// it links what is played to it, through restarts of the server too. The public operations can be called on
/// any thread and do not wait for the server.
class PipewireSession
{
public:
    using Completion = std::function<void(bool isGranted)>;

    PipewireSession();
    ~PipewireSession();
    PipewireSession(const PipewireSession&) = delete;
    PipewireSession& operator=(const PipewireSession&) = delete;

    /// Connects, and tells on the PipeWire thread whether the graph can be captured. Gives up after 5 s.
    void connect(const Completion& completion);

    /// `notDetermined` without a connection, `denied` when it was refused, `restricted` when this connection
    /// may not make links.
    AudioHardware::Authorization authorization() const;

    QMap<AudioObjectId, QString> processes() const;

    /// Of the graph, in Hz, if it is known.
    std::optional<double> sampleRate() const;

    void startCapture(const QSet<AudioObjectId>& excludedProcesses, std::shared_ptr<IOProcSlot> slot);
    void stopCapture();

private:
    struct Capture {
        QSet<AudioObjectId> excludedProcesses;
        std::shared_ptr<IOProcSlot> slot;
    };
    using Id = CaptureGraph::Id;

    void open();
    void listen();
    void close();
    void lose(const QString& reason, AudioHardware::Authorization authorization);
    void roundTrip();
    void roundTripped();
    void conclude(AudioHardware::Authorization authorization);
    void retryWhileWanted();
    void timeOut();

    void coreInfo(const pw_core_info& info);
    void coreDone(int sequence);
    void coreError(Id id, int result, const char* message);
    void globalAdded(Id id, const char* type, const spa_dict* properties);
    void globalRemoved(Id id);
    void clientChanged(Id id, const spa_dict* properties);
    void publishProcesses();
    void updateLinks();
    void streamChanged();

    // What other threads ask for.
    mutable std::mutex _lock;
    AudioHardware::Authorization _authorization = AudioHardware::notDetermined;
    QMap<AudioObjectId, QString> _processes;
    std::optional<double> _sampleRate;

    // The PipeWire thread's own.
    PipewireLoop _loop;
    PipewireLoop::Timer _timer{_loop, [this] { timeOut(); }};
    pw_context* _context = nullptr;
    pw_core* _core = nullptr;
    pw_registry* _registry = nullptr;
    spa_hook _coreListener{};
    spa_hook _registryListener{};
    int _sequence = 0;
    int _roundTrips = 0; ///< still to be made until the graph is known
    bool _canLink = false;
    bool _isLossLogged = false; ///< once an outage, however often it is tried again
    std::vector<Completion> _completions;
    std::optional<Capture> _capture;
    std::unique_ptr<CaptureStream> _stream;
    CaptureGraph _graph;
    std::map<Id, std::unique_ptr<ClientWatch>> _clients;
    std::map<CaptureGraph::Link, std::unique_ptr<GraphLink>> _links;
};
