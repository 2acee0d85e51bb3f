#include "platform/linux/pipewire/PipewireLoop.h"

#include <pipewire/pipewire.h>

#include <cmath>

namespace {

timespec asTimespec(double seconds)
{
    const double whole = std::floor(seconds);
    return {.tv_sec = static_cast<time_t>(whole), .tv_nsec = std::lround((seconds - whole) * 1e9)};
}

int runPosted(spa_loop* /*loop*/, bool /*isAsync*/, std::uint32_t /*sequence*/, const void* data,
              std::size_t /*size*/, void* /*userData*/)
{
    const std::unique_ptr<PipewireLoop::Work> work(*static_cast<PipewireLoop::Work* const*>(data));
    (*work)();
    return 0;
}

} // namespace

PipewireLoop::PipewireLoop()
{
    pw_init(nullptr, nullptr);
    _thread = pw_thread_loop_new("pellar-pipewire", nullptr);
}

bool PipewireLoop::start()
{
    _isRunning = _thread != nullptr && pw_thread_loop_start(_thread) == 0;
    return _isRunning;
}

PipewireLoop::~PipewireLoop()
{
    if (_thread != nullptr) {
        pw_thread_loop_destroy(_thread);
    }
    pw_deinit();
}

pw_loop* PipewireLoop::loop() const
{
    return _thread != nullptr ? pw_thread_loop_get_loop(_thread) : nullptr;
}

bool PipewireLoop::post(Work work)
{
    if (!_isRunning) {
        return false;
    }
    auto* const pointer = new Work(std::move(work));
    if (pw_loop_invoke(loop(), runPosted, 0, &pointer, sizeof pointer, false, nullptr) < 0) {
        delete pointer;
        return false;
    }
    return true;
}

void PipewireLoop::stop()
{
    if (_isRunning) {
        _isRunning = false;
        pw_thread_loop_stop(_thread);
    }
}

PipewireLoop::Timer::Timer(PipewireLoop& loop, Work work) : _loop(loop), _work(std::move(work))
{
    const auto fire = [](void* data, std::uint64_t /*expirations*/) { static_cast<Timer*>(data)->_work(); };
    _source = _loop.loop() != nullptr ? pw_loop_add_timer(_loop.loop(), fire, this) : nullptr;
}

PipewireLoop::Timer::~Timer()
{
    if (_source != nullptr) {
        pw_loop_destroy_source(_loop.loop(), _source);
    }
}

void PipewireLoop::Timer::fireAfter(double seconds)
{
    set(seconds, 0);
}

void PipewireLoop::Timer::fireEvery(double seconds)
{
    set(seconds, seconds);
}

void PipewireLoop::Timer::cancel()
{
    set(0, 0);
}

void PipewireLoop::Timer::set(double first, double interval)
{
    if (_source != nullptr) {
        timespec value = asTimespec(first);
        timespec repeat = asTimespec(interval);
        pw_loop_update_timer(_loop.loop(), _source, &value, &repeat, false);
    }
}
