#include "linux/pipewire/PipewireSession.h"

#include "linux/pipewire/GraphProperties.h"
#include "linux/pipewire/PipewireLog.h"

#include <cerrno>
#include <cstring>

Q_LOGGING_CATEGORY(pipewireLog, "com.orvalen.pellar.pipewire", QtWarningMsg)

namespace {

constexpr double connectTimeout = 5;  // seconds
constexpr double retryInterval = 0.5; // seconds
constexpr double idleInterval = 5;    // seconds; as long as there is nothing to be heard

QString errorText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

PipewireSession::PipewireSession()
{
    if (!_loop.start()) {
        qCWarning(pipewireLog, "no thread for PipeWire");
    }
}

PipewireSession::~PipewireSession()
{
    _loop.stop();
    close();
    if (_context != nullptr) {
        pw_context_destroy(_context);
    }
}

void PipewireSession::connect(const Completion& completion)
{
    const bool isPosted = _loop.post([this, completion] {
        const AudioHardware::Authorization current = authorization();
        if (current == AudioHardware::authorized || current == AudioHardware::restricted) {
            completion(current == AudioHardware::authorized);
            return;
        }
        _completions.push_back(completion);
        if (_core == nullptr) {
            open();
        }
    });
    if (!isPosted) {
        completion(false);
    }
}

AudioHardware::Authorization PipewireSession::authorization() const
{
    const std::lock_guard guard(_lock);
    return _authorization;
}

QMap<AudioObjectId, QString> PipewireSession::processes() const
{
    const std::lock_guard guard(_lock);
    return _processes;
}

std::optional<double> PipewireSession::sampleRate() const
{
    const std::lock_guard guard(_lock);
    return _sampleRate;
}

DeviceList PipewireSession::devices() const
{
    const std::lock_guard guard(_lock);
    return _publishedDevices;
}

QString PipewireSession::defaultSink() const
{
    const std::lock_guard guard(_lock);
    return _publishedSink;
}

void PipewireSession::watchDevices(std::function<void()> changed)
{
    _loop.post([this, changed = std::move(changed)] {
        _devicesChanged = changed;
        if (_core == nullptr) {
            open();
        }
    });
}

void PipewireSession::wishForSink(const QString& name)
{
    _loop.post([this, name] {
        if (_defaultSink) {
            _defaultSink->wish(name);
        }
    });
}

void PipewireSession::startCapture(const QSet<AudioObjectId>& excludedProcesses,
                                   std::shared_ptr<IOProcSlot> slot)
{
    _loop.post([this, excludedProcesses, slot = std::move(slot)] {
        _capture = std::make_unique<Capture>(_loop, excludedProcesses, slot, [this] { updateCapture(); });
        if (authorization() == AudioHardware::authorized) {
            updateCapture();
        } else {
            retryWhileWanted();
        }
    });
}

void PipewireSession::stopCapture()
{
    _loop.post([this] { _capture.reset(); });
}

void PipewireSession::open()
{
    if (_context == nullptr) {
        _context = pw_context_new(
            _loop.loop(),
            pw_properties_new(PW_KEY_APP_NAME, "Pellar", PW_KEY_APP_ID, "com.orvalen.pellar", nullptr), 0);
    }
    if (_context != nullptr) {
        _core = pw_context_connect(_context, nullptr, 0);
    }
    if (_core == nullptr) {
        const int error = errno;
        const bool isRefused = error == EACCES || error == EPERM;
        lose(errorText(error), isRefused ? AudioHardware::denied : AudioHardware::notDetermined);
        return;
    }
    listen();
    _timer.fireAfter(connectTimeout);
}

void PipewireSession::listen()
{
    static const pw_core_events coreEvents = [] {
        pw_core_events events{};
        events.version = PW_VERSION_CORE_EVENTS;
        events.info = [](void* data, const pw_core_info* info) {
            static_cast<PipewireSession*>(data)->coreInfo(*info);
        };
        events.done = [](void* data, Id /*id*/, int sequence) {
            static_cast<PipewireSession*>(data)->coreDone(sequence);
        };
        events.error = [](void* data, Id id, int /*sequence*/, int result, const char* message) {
            static_cast<PipewireSession*>(data)->coreError(id, result, message);
        };
        return events;
    }();
    static const pw_registry_events registryEvents = {
        .version = PW_VERSION_REGISTRY_EVENTS,
        .global =
            [](void* data, Id id, Id /*permissions*/, const char* type, Id /*version*/,
               const spa_dict* properties) {
                static_cast<PipewireSession*>(data)->globalAdded(id, type, properties);
            },
        .global_remove = [](void* data, Id id) { static_cast<PipewireSession*>(data)->globalRemoved(id); },
    };
    pw_core_add_listener(_core, &_coreListener, &coreEvents, this);
    _registry = pw_core_get_registry(_core, PW_VERSION_REGISTRY, 0);
    if (_registry != nullptr) {
        pw_registry_add_listener(_registry, &_registryListener, &registryEvents, this);
    }
    // The first brings all objects, the second what those tell of themselves.
    _roundTrips = 2;
    roundTrip();
}

void PipewireSession::close()
{
    _timer.cancel();
    if (_capture) {
        _capture->clear();
    }
    _clients.clear();
    _graph = {};
    _devices = {};
    _defaultSink.reset();
    _canLink = false;
    _roundTrips = 0;
    if (_registry != nullptr) {
        spa_hook_remove(&_registryListener);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(std::exchange(_registry, nullptr)));
    }
    if (_core != nullptr) {
        spa_hook_remove(&_coreListener);
        pw_core_disconnect(std::exchange(_core, nullptr));
    }
    publishProcesses();
    publishDevices();
}

/// Not to be called from a listener of the connection, which it destroys.
void PipewireSession::lose(const QString& reason, AudioHardware::Authorization authorization)
{
    if (!_isLossLogged) {
        qCWarning(pipewireLog, "no connection with PipeWire: %s", qUtf8Printable(reason));
    }
    _isLossLogged = true;
    close();
    conclude(authorization);
    retryWhileWanted();
}

void PipewireSession::roundTrip()
{
    _sequence = pw_core_sync(_core, PW_ID_CORE, 0);
}

void PipewireSession::roundTripped()
{
    if (--_roundTrips > 0) {
        roundTrip();
        return;
    }
    _timer.cancel();
    _isLossLogged = false;
    publishProcesses();
    publishDevices();
    conclude(_canLink ? AudioHardware::authorized : AudioHardware::restricted);
    updateCapture();
}

void PipewireSession::conclude(AudioHardware::Authorization authorization)
{
    {
        const std::lock_guard guard(_lock);
        _authorization = authorization;
    }
    for (const Completion& completion : std::exchange(_completions, {})) {
        completion(authorization == AudioHardware::authorized);
    }
}

void PipewireSession::retryWhileWanted()
{
    if (isWanted() && _core == nullptr) {
        _timer.fireAfter(_capture ? retryInterval : idleInterval);
    }
}

/// The server has not answered in time, or it is time to look for it again.
void PipewireSession::timeOut()
{
    if (_core == nullptr) {
        if (isWanted()) {
            open();
        }
    } else if (_roundTrips > 0) {
        lose(QStringLiteral("no answer"), AudioHardware::notDetermined);
    }
}

void PipewireSession::coreInfo(const pw_core_info& info)
{
    if (const auto rate = GraphProperties::number(info.props, "default.clock.rate"); rate && *rate > 0) {
        const std::lock_guard guard(_lock);
        _sampleRate = static_cast<double>(*rate);
    }
}

void PipewireSession::coreDone(int sequence)
{
    if (_roundTrips > 0 && sequence == _sequence) {
        roundTripped();
    }
}

void PipewireSession::coreError(Id id, int result, const char* message)
{
    if (id != PW_ID_CORE) {
        return; // of one object, which has heard of it
    }
    const QString reason = QString::fromUtf8(message);
    if (result == -EPIPE) {
        _loop.post([this, core = _core, reason] {
            if (core == _core && core != nullptr) {
                lose(reason, AudioHardware::notDetermined);
            }
        });
    } else {
        qCDebug(pipewireLog, "PipeWire: %s", qUtf8Printable(reason)); // of a link that its port took along
    }
}
