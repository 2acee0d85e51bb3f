#pragma once

struct pw_filter;
struct pw_thread_loop;

/// A sink of the session's sound server that says of itself that it is heard 0.2 s late.
class FarSink
{
public:
    FarSink();
    ~FarSink();
    FarSink(const FarSink&) = delete;
    FarSink& operator=(const FarSink&) = delete;

private:
    void addInput(const char* name, const char* channel);

    pw_thread_loop* _loop;
    pw_filter* _filter;
};
