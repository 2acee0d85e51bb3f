#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

struct pw_loop;
struct pw_thread_loop;
struct spa_source;

/// The thread on which everything of PipeWire's lives, so that nobody else ever waits for the sound server.
class PipewireLoop
{
public:
    using Work = std::function<void()>;

    PipewireLoop();
    ~PipewireLoop();
    PipewireLoop(const PipewireLoop&) = delete;
    PipewireLoop& operator=(const PipewireLoop&) = delete;

    /// False when the system refuses another thread; work is then never run.
    bool start();

    /// Null when the system had no resources for one.
    pw_loop* loop() const;

    /// Runs work on the thread, in the order given, never inside this call, without waiting for it. False
    /// when it never will run. Any thread.
    bool post(Work work);

    /// Ends the thread; what it was given and has not run yet is dropped. Its objects may then be destroyed
    /// by the caller.
    void stop();

    /// A timer of the thread; made, set and destroyed on it, or while it does not run.
    class Timer
    {
    public:
        Timer(PipewireLoop& loop, Work work);
        ~Timer();
        Timer(const Timer&) = delete;
        Timer& operator=(const Timer&) = delete;

        /// Fires once after some seconds, or every so many. What was set before is forgotten.
        void fireAfter(double seconds);
        void fireEvery(double seconds);
        void cancel();

    private:
        void set(double first, double interval);

        PipewireLoop& _loop;
        Work _work;
        spa_source* _source;
    };

private:
    void runPosted();

    pw_thread_loop* _thread;
    spa_source* _wakeUp = nullptr;
    std::mutex _lock;
    std::vector<Work> _posted;
    std::atomic<bool> _isRunning = false;
};
