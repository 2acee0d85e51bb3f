#pragma once

#include "base/Date.h"
#include "base/Uptime.h"

#include <functional>
#include <memory>

class QObject;

/// The clocks and the timers of the main thread. Everything that waits takes one, so that a test can move
/// time by hand.
class RunLoop
{
public:
    /// A timer: it stops when the handle is destroyed.
    class Timer
    {
    public:
        Timer() = default;
        virtual ~Timer() = default;
        Timer(const Timer&) = delete;
        Timer& operator=(const Timer&) = delete;
    };
    using Work = std::function<void()>;

    RunLoop() = default;
    virtual ~RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// The date, for what people read; it may be set forward and back at any time.
    virtual Date now() const = 0;

    /// The steady clock, for spans of time.
    virtual Uptime uptime() const = 0;

    /// Runs `work` once on the main thread, `seconds` (0 or more) from now, unless `context` is gone by then.
    /// Zero means: behind what is already queued, never inside this call.
    virtual void after(double seconds, QObject* context, Work work) = 0;

    /// Runs `work` once on the main thread, `seconds` (0 or more) from now and no sooner, to the millisecond,
    /// while the handle and `context` live.
    [[nodiscard]] virtual std::unique_ptr<Timer> once(double seconds, QObject* context, Work work) = 0;

    /// Runs `work` every `seconds` (above 0) on the main thread while the handle and `context` live.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(double seconds, QObject* context, Work work) = 0;
};
