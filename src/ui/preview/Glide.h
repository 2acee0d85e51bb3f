#pragma once

#include "base/Uptime.h"

/// A value on its way to another: it starts fast and comes to rest softly. A new goal is set out for from
/// wherever it is.
class Glide
{
public:
    explicit Glide(double seconds) : _seconds(seconds) {}

    double at(Uptime now) const;
    bool isMoving(Uptime now) const { return now - _start < _seconds; }
    double goal() const { return _to; }

    void setGoal(double goal, Uptime now);
    void jump(double goal);

private:
    double _seconds;
    double _from = 0;
    double _to = 0;
    Uptime _start = Uptime::distantPast();
};
