#include "OwnTone.h"

#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <cmath>
#include <numbers>

namespace {

constexpr int rate = 48000; // Hz

} // namespace

OwnTone::OwnTone()
{
    static const pw_stream_events events = [] {
        pw_stream_events handlers{};
        handlers.version = PW_VERSION_STREAM_EVENTS;
        handlers.process = [](void* data) { static_cast<OwnTone*>(data)->fill(); };
        return handlers;
    }();
    pw_init(nullptr, nullptr);
    _loop = pw_thread_loop_new("own-tone", nullptr);
    _stream = pw_stream_new_simple(pw_thread_loop_get_loop(_loop), "own tone",
                                   pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY,
                                                     "Playback", PW_KEY_NODE_NAME, "own-tone", nullptr),
                                   &events, this);
    std::uint8_t space[1024];
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, space, sizeof space);
    spa_audio_info_raw format{};
    format.format = SPA_AUDIO_FORMAT_F32;
    format.channels = 1;
    format.rate = rate;
    const spa_pod* parameter = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format);
    pw_stream_connect(_stream, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                      static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS),
                      &parameter, 1);
    pw_thread_loop_start(_loop);
}

OwnTone::~OwnTone()
{
    pw_thread_loop_stop(_loop);
    pw_stream_destroy(_stream);
    pw_thread_loop_destroy(_loop);
    pw_deinit();
}

bool OwnTone::isPlaying() const
{
    pw_thread_loop_lock(_loop);
    const bool isStreaming = pw_stream_get_state(_stream, nullptr) == PW_STREAM_STATE_STREAMING;
    pw_thread_loop_unlock(_loop);
    return isStreaming;
}

void OwnTone::fill()
{
    pw_buffer* const buffer = pw_stream_dequeue_buffer(_stream);
    if (buffer == nullptr) {
        return;
    }
    spa_data& data = buffer->buffer->datas[0];
    auto* const samples = static_cast<float*>(data.data);
    const auto count = static_cast<std::uint32_t>(data.maxsize / sizeof(float));
    for (std::uint32_t i = 0; i < count; ++i) {
        samples[i] = static_cast<float>(0.5 * std::sin(_phase));
        _phase += 2 * std::numbers::pi * 2000 / rate;
    }
    data.chunk->offset = 0;
    data.chunk->stride = sizeof(float);
    data.chunk->size = count * sizeof(float);
    pw_stream_queue_buffer(_stream, buffer);
}
