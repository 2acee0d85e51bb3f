#include "linux/pipewire/PipewireLoop.h"

#include <pipewire/pipewire.h>

#include <cmath>

namespace {

timespec asTimespec(double seconds)
{
    const double whole = std::floor(seconds);
    return {.tv_sec = static_cast<time_t>(whole), .tv_nsec = std::lround((seconds - whole) * 1e9)};
}

} // namespace

PipewireLoop::PipewireLoop()
{
    pw_init(nullptr, nullptr);
    _thread = pw_thread_loop_new("pellar-pipewire", nullptr);
    if (_thread != nullptr) {
        const auto run = [](void* data, std::uint64_t /*count*/) {
            static_cast<PipewireLoop*>(data)->runPosted();
        };
        _wakeUp = pw_loop_add_event(loop(), run, this);
    }
}

bool PipewireLoop::start()
{
    _isRunning = _wakeUp != nullptr && pw_thread_loop_start(_thread) == 0;
    return _isRunning;
}

PipewireLoop::~PipewireLoop()
{
    if (_wakeUp != nullptr) {
        pw_loop_destroy_source(loop(), _wakeUp);
    }
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
    {
        const std::lock_guard guard(_lock);
        _posted.push_back(std::move(work));
    }
    pw_loop_signal_event(loop(), _wakeUp);
    return true;
}

// PipeWire's own way of handing work to a loop runs it at once, on the caller's thread, as long as the new
// thread has not come to the loop, and within whatever calls it on the loop's own.
void PipewireLoop::runPosted()
{
    std::vector<Work> posted;
    {
        const std::lock_guard guard(_lock);
        posted.swap(_posted);
    }
    for (const Work& work : posted) {
        work();
    }
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
