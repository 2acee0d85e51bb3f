#pragma once

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <spa/param/latency-utils.h>

#include <array>

/// A sink of the session's sound server that says of itself that it is heard 0.2 s late.
class FarSink
{
public:
    FarSink()
    {
        _events.version = PW_VERSION_FILTER_EVENTS;
        pw_init(nullptr, nullptr);
        _loop = pw_thread_loop_new("far", nullptr);
        _filter = pw_filter_new_simple(
            pw_thread_loop_get_loop(_loop), "far",
            pw_properties_new(PW_KEY_NODE_NAME, "far", PW_KEY_MEDIA_CLASS, "Audio/Sink", nullptr), &_events,
            nullptr);
        addInput();
        pw_filter_connect(_filter, PW_FILTER_FLAG_CUSTOM_LATENCY, nullptr, 0);
        pw_thread_loop_start(_loop);
    }
    ~FarSink()
    {
        pw_thread_loop_stop(_loop);
        pw_filter_destroy(_filter);
        pw_thread_loop_destroy(_loop);
        pw_deinit();
    }
    FarSink(const FarSink&) = delete;
    FarSink& operator=(const FarSink&) = delete;

private:
    void addInput()
    {
        spa_latency_info latency{};
        latency.direction = SPA_DIRECTION_INPUT;
        latency.min_ns = latency.max_ns = 200'000'000;
        std::array<std::byte, 512> space{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, space.data(), space.size());
        const spa_pod* parameter = spa_latency_build(&builder, SPA_PARAM_Latency, &latency);
        auto* const properties = pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio",
                                                   PW_KEY_PORT_NAME, "playback_FL", nullptr);
        pw_filter_add_port(_filter, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, 1, properties,
                           &parameter, 1);
    }

    pw_filter_events _events{};
    pw_thread_loop* _loop;
    pw_filter* _filter;
};
