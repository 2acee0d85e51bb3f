#include "linux/pipewire/CaptureStream.h"

#include <QLoggingCategory>

#include <pipewire/pipewire.h>

#include <algorithm>
#include <cmath>

namespace {

Q_LOGGING_CATEGORY(pipewireLog, "com.orvalen.pellar.pipewire", QtInfoMsg)

// Longer than the longest cycle of the graph: 8192 frames at 44.1 kHz are 0.19 s.
constexpr double checkInterval = 0.25; // seconds

constexpr float silenceFloor = 1e-4F; // below it no analysis hears anything

const float* samplesOf(void* port, quint32 frames)
{
    return static_cast<const float*>(pw_filter_get_dsp_buffer(port, frames));
}

} // namespace

void CaptureStream::Destroy::operator()(pw_filter* filter) const
{
    pw_filter_destroy(filter);
}

CaptureStream::CaptureStream(PipewireLoop& loop, pw_core* core, std::shared_ptr<IOProcSlot> slot,
                             std::function<void()> changed)
    : _slot(std::move(slot))
    // Without a media class it is no recording, to the session manager or to the desktop's microphone sign.
    // Passive, and in no need of a driver: sinks without sound go to sleep as if it were not there.
    , _filter(pw_filter_new(core, "Pellar",
                            pw_properties_new(PW_KEY_NODE_NAME, "pellar.capture", PW_KEY_NODE_DESCRIPTION,
                                              "Pellar visualizer", PW_KEY_MEDIA_TYPE, "Audio",
                                              PW_KEY_NODE_AUTOCONNECT, "false", PW_KEY_NODE_PASSIVE, "true",
                                              PW_KEY_NODE_WANT_DRIVER, "false", nullptr)))
    , _timer(loop, [this] { check(); })
{
    setRunning(false);
    if (!connect()) {
        qCWarning(pipewireLog, "the capture node could not be made");
        _filter.reset();
    }
    _changed = std::move(changed); // not before: nobody has this object yet
}

CaptureStream::~CaptureStream()
{
    // The real-time thread may be in the listener until the node is gone, which takes the listener along.
    _changed = [] {};
    _filter.reset();
    setRunning(false);
}

bool CaptureStream::connect()
{
    static const pw_filter_events events = {
        .version = PW_VERSION_FILTER_EVENTS,
        .destroy = nullptr,
        .state_changed =
            [](void* data, pw_filter_state /*old*/, pw_filter_state state, const char* error) {
                static_cast<CaptureStream*>(data)->stateChanged(state, error);
            },
        .io_changed = nullptr,
        .param_changed = nullptr,
        .add_buffer = nullptr,
        .remove_buffer = nullptr,
        .process =
            [](void* data, spa_io_position* position) {
                if (position != nullptr) {
                    static_cast<CaptureStream*>(data)->process(*position);
                }
            },
        .drained = nullptr,
        .command = nullptr,
    };
    if (!_filter) {
        return false;
    }
    pw_filter_add_listener(_filter.get(), &_listener, &events, this);
    _left = addInput("input_FL", "FL");
    _right = addInput("input_FR", "FR");
    return _left != nullptr && _right != nullptr &&
           pw_filter_connect(_filter.get(), PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) >= 0;
}

void* CaptureStream::addInput(const char* name, const char* channel)
{
    auto* const properties = pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                                               name, PW_KEY_AUDIO_CHANNEL, channel, nullptr);
    // The one byte is not used; without data of its own a port could not be told from none.
    return pw_filter_add_port(_filter.get(), PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, 1,
                              properties, nullptr, 0);
}

std::optional<quint32> CaptureStream::nodeId() const
{
    const quint32 id = _filter ? pw_filter_get_node_id(_filter.get()) : SPA_ID_INVALID;
    return id == SPA_ID_INVALID ? std::nullopt : std::optional(id);
}

bool CaptureStream::hasFailed() const
{
    const char* error = nullptr;
    return !_filter || pw_filter_get_state(_filter.get(), &error) <= PW_FILTER_STATE_UNCONNECTED;
}

void CaptureStream::stateChanged(pw_filter_state state, const char* error)
{
    if (state == PW_FILTER_STATE_ERROR) {
        qCWarning(pipewireLog, "the capture node failed: %s", error != nullptr ? error : "unknown");
    }
    setRunning(state == PW_FILTER_STATE_STREAMING);
    _changed();
}

/// A graph with nothing to play stands still, and with it this node; to the listener, that is silence.
void CaptureStream::setRunning(bool isRunning)
{
    if (isRunning) {
        _timer.fireEvery(checkInterval);
    } else {
        _timer.cancel();
        _isLoud = false;
        deliverSilence();
        tell();
    }
}

void CaptureStream::process(const spa_io_position& position)
{
    _cycles.fetch_add(1, std::memory_order_relaxed);
    _rate.store(position.clock.rate.denom, std::memory_order_relaxed);
    const auto frames = static_cast<quint32>(position.clock.duration);
    bool isLoud = false;
    const float* const left = samplesOf(_left, frames);
    const float* const right = samplesOf(_right, frames);
    for (quint32 done = 0; done < frames; done += chunkFrames) {
        const quint32 count = std::min(chunkFrames, frames - done);
        for (size_t i = 0; i < count; ++i) {
            _chunk[2 * i] = left != nullptr ? left[done + i] : 0;
            _chunk[2 * i + 1] = right != nullptr ? right[done + i] : 0;
        }
        isLoud = isLoud || std::any_of(_chunk.begin(), _chunk.begin() + 2L * count,
                                       [](float sample) { return std::abs(sample) > silenceFloor; });
        _slot->deliver(_chunk.data(), count, position.clock.nsec);
    }
    if (isLoud) {
        _isLoud.store(true, std::memory_order_relaxed);
    }
}

/// A graph that should run may stand still, too, as when its sink is being changed; and one that runs may
/// play silence.
void CaptureStream::check()
{
    const quint32 cycles = _cycles.load(std::memory_order_relaxed);
    const bool isStanding = cycles == std::exchange(_seenCycles, cycles);
    if (isStanding && !_isSilent) {
        deliverSilence();
    }
    _isSilent = isStanding;
    tell();
}

void CaptureStream::tell()
{
    const quint32 rate = _rate.load(std::memory_order_relaxed);
    AudioHardware::DeviceState state{.isSounding = _isLoud.exchange(false, std::memory_order_relaxed),
                                     .sampleRate = std::nullopt};
    if (rate > 0) {
        state.sampleRate = rate;
    }
    if (state != std::exchange(_told, state)) {
        _slot->tell(state);
    }
}

void CaptureStream::deliverSilence()
{
    static constexpr Chunk silence{};
    constexpr int chunks = 4; // a tenth of a second: more than is looked at at once
    for (int i = 0; i < chunks; ++i) {
        _slot->deliver(silence.data(), chunkFrames, 0);
    }
}
