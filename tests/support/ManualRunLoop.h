#pragma once

#include "base/RunLoop.h"

#include <QPointer>

#include <algorithm>
#include <list>

/// A run loop whose clocks stand still until a test moves them.
class ManualRunLoop final : public RunLoop
{
public:
    Date now() const override { return _date + _now.seconds; }
    Uptime uptime() const override { return _now; }
    void after(double seconds, QObject* context, Work work) override
    {
        _entries.push_back({_now + seconds, 0, context, std::move(work), nullptr});
    }
    std::unique_ptr<Timer> once(double seconds, QObject* context, Work work) override
    {
        return start(seconds, 0, context, std::move(work));
    }
    std::unique_ptr<Timer> every(double seconds, QObject* context, Work work) override
    {
        return start(seconds, seconds, context, std::move(work));
    }

    /// Sets the date, as a user may; the steady clock knows nothing of it.
    void setDateForward(double seconds) { _date = _date + seconds; }

    /// Moves the clocks, running what falls due in the order of its time.
    void advance(double seconds)
    {
        const Uptime end = _now + seconds;
        while (true) {
            _entries.remove_if([](const Entry& entry) { return entry.context.isNull(); });
            const auto next = std::min_element(_entries.begin(), _entries.end(),
                                               [](const Entry& a, const Entry& b) { return a.due < b.due; });
            // A microsecond of grace: sums of tenths do not meet exactly.
            if (next == _entries.end() || next->due > end + 1e-6) {
                break;
            }
            _now = std::max(_now, next->due);
            const Work work = next->work;
            if (next->interval > 0) {
                next->due = next->due + next->interval;
            } else {
                _entries.erase(next);
            }
            work();
        }
        _now = end;
    }

    /// Runs what is due now: everything scheduled with a delay of zero.
    void settle() { advance(0); }

    /// How many timers and delayed works wait.
    int pending() const { return static_cast<int>(_entries.size()); }

private:
    std::unique_ptr<Timer> start(double seconds, double interval, QObject* context, Work work)
    {
        auto handle = std::make_unique<Handle>(*this);
        _entries.push_back({_now + seconds, interval, context, std::move(work), handle.get()});
        return handle;
    }

    struct Entry {
        Uptime due;
        double interval; ///< 0: once
        QPointer<QObject> context;
        Work work;
        const Timer* handle;
    };
    struct Handle final : Timer {
        explicit Handle(ManualRunLoop& itsLoop) : loop(itsLoop) {}
        ~Handle() override
        {
            loop._entries.remove_if([this](const Entry& entry) { return entry.handle == this; });
        }
        ManualRunLoop& loop;
    };

    Uptime _now{1'000.0};
    Date _date{799'999'000.0}; ///< at uptime 0
    std::list<Entry> _entries;
};
