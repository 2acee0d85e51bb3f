#include "linux/pipewire/CaptureStream.h"

#include "linux/pipewire/PipewireLog.h"

#include <pipewire/pipewire.h>
#include <spa/param/latency-utils.h>
#include <spa/pod/builder.h>

#include <array>

namespace {

const float* samplesOf(void* port, quint32 frames)
{
    return static_cast<const float*>(pw_filter_get_dsp_buffer(port, frames));
}

} // namespace

void CaptureStream::Destroy::operator()(pw_filter* filter) const
{
    pw_filter_destroy(filter);
}

CaptureStream::CaptureStream(pw_core* core, std::shared_ptr<CaptureMix> mix, std::function<void()> changed)
    : _share(std::move(mix))
    // Without a media class it is no recording, to the session manager or to the desktop's microphone sign.
    // Passive, and in no need of a driver: sinks without sound go to sleep as if it were not there.
    , _filter(pw_filter_new(core, "Pellar",
                            pw_properties_new(PW_KEY_NODE_NAME, nodeName, PW_KEY_NODE_DESCRIPTION,
                                              "Pellar visualizer", PW_KEY_MEDIA_TYPE, "Audio",
                                              PW_KEY_NODE_AUTOCONNECT, "false", PW_KEY_NODE_PASSIVE, "true",
                                              PW_KEY_NODE_WANT_DRIVER, "false", nullptr)))
{
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
    constexpr auto flags =
        static_cast<pw_filter_flags>(PW_FILTER_FLAG_RT_PROCESS | PW_FILTER_FLAG_CUSTOM_LATENCY);
    return _left != nullptr && _right != nullptr && pw_filter_connect(_filter.get(), flags, nullptr, 0) >= 0;
}

void* CaptureStream::addInput(const char* name, const char* channel)
{
    auto* const properties = pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                                               name, PW_KEY_AUDIO_CHANNEL, channel, nullptr);
    // A player is told the range of the latencies of all that it is linked to. This one is what a range
    // begins with before there is anything in it, and so does not widen that of the sink.
    spa_latency_info latency{};
    spa_latency_info_combine_start(&latency, SPA_DIRECTION_INPUT);
    std::array<std::byte, 512> space{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, space.data(), space.size());
    const spa_pod* parameter = spa_latency_build(&builder, SPA_PARAM_Latency, &latency);
    // The one byte is not used; without data of its own a port could not be told from none.
    return pw_filter_add_port(_filter.get(), PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, 1,
                              properties, &parameter, 1);
}

std::optional<quint32> CaptureStream::nodeId() const
{
    const quint32 id = _filter ? pw_filter_get_node_id(_filter.get()) : SPA_ID_INVALID;
    return id == SPA_ID_INVALID ? std::nullopt : std::optional(id);
}

bool CaptureStream::isRunning() const
{
    const char* error = nullptr;
    return _filter && pw_filter_get_state(_filter.get(), &error) == PW_FILTER_STATE_STREAMING;
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
    _changed();
}

void CaptureStream::process(const spa_io_position& position)
{
    const auto frames = static_cast<quint32>(position.clock.duration);
    _share.add({.left = samplesOf(_left, frames),
                .right = samplesOf(_right, frames),
                .frames = frames,
                .rate = position.clock.rate.denom,
                .now = position.clock.nsec});
}
