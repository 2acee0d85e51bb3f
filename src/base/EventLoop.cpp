#include "base/EventLoop.h"

#include <QDateTime>
#include <QPointer>
#include <QTimer>

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
    QtTimer(double seconds, QObject* context, RunLoop::Work work)
    {
        QObject::connect(&_timer, &QTimer::timeout, context, std::move(work));
        QObject::connect(context, &QObject::destroyed, &_timer, &QTimer::stop);
        _timer.setTimerType(seconds < 0.25 ? Qt::PreciseTimer : Qt::CoarseTimer);
        _timer.start(milliseconds(seconds));
    }

private:
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

std::unique_ptr<RunLoop::Timer> EventLoop::every(double seconds, QObject* context, Work work)
{
    return std::make_unique<QtTimer>(seconds, context, std::move(work));
}
