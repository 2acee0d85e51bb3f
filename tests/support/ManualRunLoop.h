#pragma once

#include "base/RunLoop.h"

#include <QPointer>

#include <list>

/// A run loop whose clock stands still until a test moves it.
class ManualRunLoop final : public RunLoop
{
public:
    Date now() const override { return _now; }
    void after(double seconds, QObject* context, Work work) override;
    std::unique_ptr<Timer> every(double seconds, QObject* context, Work work) override;

    /// Moves the clock, running what falls due in the order of its time.
    void advance(double seconds);

    /// Runs what is due now: everything scheduled with a delay of zero.
    void settle() { advance(0); }

    /// How many timers and delayed works wait.
    int pending() const { return static_cast<int>(_entries.size()); }

private:
    struct Entry {
        Date due;
        double interval; ///< 0: once
        QPointer<QObject> context;
        Work work;
        const Timer* handle;
    };
    class Handle;

    Date _now{800'000'000.0};
    std::list<Entry> _entries;
};
