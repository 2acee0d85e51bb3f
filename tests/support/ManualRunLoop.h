#pragma once

#include "base/RunLoop.h"

#include <QPointer>

#include <list>

/// A run loop whose clocks stand still until a test moves them.
class ManualRunLoop final : public RunLoop
{
public:
    Date now() const override { return _date + _now.seconds; }
    Uptime uptime() const override { return _now; }
    void after(double seconds, QObject* context, Work work) override;
    std::unique_ptr<Timer> every(double seconds, QObject* context, Work work) override;

    /// Sets the date, as a user may; the steady clock knows nothing of it.
    void setDateForward(double seconds) { _date = _date + seconds; }

    /// Moves the clocks, running what falls due in the order of its time.
    void advance(double seconds);

    /// Runs what is due now: everything scheduled with a delay of zero.
    void settle() { advance(0); }

    /// How many timers and delayed works wait.
    int pending() const { return static_cast<int>(_entries.size()); }

private:
    struct Entry {
        Uptime due;
        double interval; ///< 0: once
        QPointer<QObject> context;
        Work work;
        const Timer* handle;
    };
    class Handle;

    Uptime _now{1'000.0};
    Date _date{799'999'000.0}; ///< at uptime 0
    std::list<Entry> _entries;
};
