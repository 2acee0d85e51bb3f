#include "ui/preview/Glide.h"

double Glide::at(Uptime now) const
{
    if (!isMoving(now)) {
        return _to;
    }
    const double left = 1 - (now - _start) / _seconds;
    return _to + (_from - _to) * left * left * left;
}

void Glide::setGoal(double goal, Uptime now)
{
    _from = at(now);
    _to = goal;
    _start = now;
}

void Glide::jump(double goal)
{
    _to = goal;
    _start = Uptime::distantPast();
}
