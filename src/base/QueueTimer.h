#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

class SerialQueue;

/// Runs work on a serial queue at a steady pace, which takes the queue up while it lives. Times that were
/// missed are left out. Destroying it, on any thread, stops it without waiting for work that is being done.
class QueueTimer
{
public:
    using Seconds = std::chrono::duration<double>;

    QueueTimer(SerialQueue& queue, Seconds first, Seconds interval, std::function<void()> work);
    ~QueueTimer();
    QueueTimer(const QueueTimer&) = delete;
    QueueTimer& operator=(const QueueTimer&) = delete;

private:
    struct State {
        std::mutex lock;
        std::condition_variable change;
        bool isCancelled = false;
    };
    std::shared_ptr<State> _state = std::make_shared<State>();
};
