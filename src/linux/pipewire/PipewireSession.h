#pragma once

#include "linux/pipewire/Capture.h"
#include "linux/pipewire/CaptureGraph.h"
#include "linux/pipewire/ClientWatch.h"
#include "linux/pipewire/DefaultSink.h"
#include "linux/pipewire/DeviceList.h"
#include "linux/pipewire/IOProcSlot.h"
#include "linux/pipewire/PipewireLoop.h"

#include <pipewire/pipewire.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// One program's connection with the sound server: it keeps up with the graph and its devices, and while a
/// capture is wanted it links what is played to it, through restarts of the server too. The public operations
/// can be called on any thread and do not wait for the server.
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

    /// `notDetermined` without a connection, `denied` when it was refused, `restricted` as long as this
    /// connection may not make links.
    AudioHardware::Authorization authorization() const;

    QMap<AudioObjectId, QString> processes() const;

    /// Of the graph, in Hz, if it is known.
    std::optional<double> sampleRate() const;

    /// Keeps the connection up from now on. `changed` is called on the PipeWire thread.
    void watchDevices(std::function<void()> changed);
    DeviceList devices() const;

    /// The name of the default sink; empty when it is not known.
    QString defaultSink() const;

    /// Has no effect without a session manager.
    void wishForSink(const QString& name);

    void startCapture(const QSet<AudioObjectId>& excludedProcesses, std::shared_ptr<IOProcSlot> slot);
    void stopCapture();

private:
    using Id = CaptureGraph::Id;

    void open();
    void listen();
    void close();
    void lose(const QString& reason, AudioHardware::Authorization authorization);
    void roundTrip();
    void roundTripped();
    void conclude(AudioHardware::Authorization authorization);
    bool isWanted() const { return _capture || _devicesChanged; }
    void retryWhileWanted();
    void timeOut();

    void coreInfo(const pw_core_info& info);
    void coreDone(int sequence);
    void coreError(Id id, int result, const char* message);
    void globalAdded(Id id, const char* type, const spa_dict* properties);
    void globalRemoved(Id id);
    void clientChanged(Id id, const spa_dict* properties);
    void factoryAdded(const spa_dict* properties);
    void nodeAdded(Id id, const spa_dict* properties);
    void portAdded(Id id, const spa_dict* properties);
    void linkAdded(Id id, const spa_dict* properties);
    void publishProcesses();
    void publishDevices();
    void updateCapture();

    // What other threads ask for.
    mutable std::mutex _lock;
    AudioHardware::Authorization _authorization = AudioHardware::notDetermined;
    QMap<AudioObjectId, QString> _processes;
    std::optional<double> _sampleRate;
    DeviceList _publishedDevices;
    QString _publishedSink;

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
    std::unique_ptr<Capture> _capture;
    std::function<void()> _devicesChanged;
    CaptureGraph _graph;
    DeviceList _devices;
    std::unique_ptr<DefaultSink> _defaultSink;
    Id _defaultSinkId = SPA_ID_INVALID; ///< of the object behind it
    std::map<Id, std::unique_ptr<ClientWatch>> _clients;
};
