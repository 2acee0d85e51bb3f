#include "support/ManualRunLoop.h"

#include <algorithm>

class ManualRunLoop::Handle final : public RunLoop::Timer
{
public:
    explicit Handle(ManualRunLoop& loop) : _loop(loop) {}
    ~Handle() override
    {
        _loop._entries.remove_if([this](const Entry& entry) { return entry.handle == this; });
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

private:
    ManualRunLoop& _loop;
};

void ManualRunLoop::after(double seconds, QObject* context, Work work)
{
    _entries.push_back({_now + seconds, 0, context, std::move(work), nullptr});
}

std::unique_ptr<RunLoop::Timer> ManualRunLoop::every(double seconds, QObject* context, Work work)
{
    auto handle = std::make_unique<Handle>(*this);
    _entries.push_back({_now + seconds, seconds, context, std::move(work), handle.get()});
    return handle;
}

void ManualRunLoop::advance(double seconds)
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
