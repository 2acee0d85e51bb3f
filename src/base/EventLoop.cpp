#include "base/EventLoop.h"

#include <QDateTime>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

int milliseconds(double seconds)
{
    return static_cast<int>(std::lround(seconds * 1000));
}

class QtTimer final : public RunLoop::Timer
{
public:
    QtTimer(QObject* context, RunLoop::Work work)
    {
        QObject::connect(&_timer, &QTimer::timeout, context, std::move(work));
        QObject::connect(context, &QObject::destroyed, &_timer, &QTimer::stop);
    }

    void runOnce(double seconds)
    {
        _timer.setSingleShot(true);
        _timer.setTimerType(Qt::PreciseTimer);
        _timer.start(static_cast<int>(std::ceil(std::min(seconds, longest) * 1000)));
    }

    void repeat(double seconds)
    {
        _timer.setTimerType(seconds < 1 ? Qt::PreciseTimer : Qt::CoarseTimer);
        _timer.start(milliseconds(seconds));
    }

private:
    static constexpr double longest = 1e6; // seconds that a timer can count

    QTimer _timer;
};

} // namespace

Date EventLoop::now() const
{
    return {static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - Date::unixOffset};
}

Uptime EventLoop::uptime() const
{
    return {std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count()};
}

void EventLoop::after(double seconds, QObject* context, Work work)
{
    QTimer::singleShot(milliseconds(seconds), context, std::move(work));
}

std::unique_ptr<RunLoop::Timer> EventLoop::once(double seconds, QObject* context, Work work)
{
    auto timer = std::make_unique<QtTimer>(context, std::move(work));
    timer->runOnce(seconds);
    return timer;
}

std::unique_ptr<RunLoop::Timer> EventLoop::every(double seconds, QObject* context, Work work)
{
    auto timer = std::make_unique<QtTimer>(context, std::move(work));
    timer->repeat(seconds);
    return timer;
}
