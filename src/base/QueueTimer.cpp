#include "base/QueueTimer.h"

#include "base/SerialQueue.h"

QueueTimer::QueueTimer(SerialQueue& queue, Seconds first, Seconds interval, std::function<void()> work)
{
    using Clock = std::chrono::steady_clock;
    const auto pause = std::chrono::duration_cast<Clock::duration>(interval);
    const auto start = Clock::now() + std::chrono::duration_cast<Clock::duration>(first);
    queue.async([state = _state, start, pause, work = std::move(work)] {
        auto due = start;
        std::unique_lock guard(state->lock);
        while (!state->change.wait_until(guard, due, [&] { return state->isCancelled; })) {
            guard.unlock();
            work();
            due += pause;
            if (const auto now = Clock::now(); due < now) {
                due = now + pause;
            }
            guard.lock();
        }
    });
}

QueueTimer::~QueueTimer()
{
    {
        const std::lock_guard guard(_state->lock);
        _state->isCancelled = true;
    }
    _state->change.notify_all();
}
