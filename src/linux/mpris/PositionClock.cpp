#include "linux/mpris/PositionClock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double samePosition = 0.001;       // seconds
constexpr double leastObservation = 0.5;     // seconds of playing before a standstill means anything
constexpr double unnoticedDifference = 0.01; // seconds
constexpr double noticeableDifference = 1.0; // seconds

bool isSame(double a, double b)
{
    return std::abs(a - b) < samePosition;
}

} // namespace

double PositionClock::at(Uptime now) const
{
    const double elapsed = _isRunning ? (now - _since) * _rate : 0;
    return within(_base + elapsed);
}

bool PositionClock::agrees(const PositionClock& other, Uptime now) const
{
    return rate() == other.rate() && std::abs(at(now) - other.at(now)) < unnoticedDifference;
}

double PositionClock::within(double seconds) const
{
    const double position = std::max(0.0, seconds);
    return _length ? std::min(position, *_length) : position;
}

void PositionClock::setRate(double rate, Uptime now)
{
    if (!std::isfinite(rate) || rate <= 0) {
        return;
    }
    set(at(now), now);
    _rate = rate;
}

void PositionClock::setRunning(bool running, Uptime now)
{
    if (running == _isRunning) {
        return;
    }
    set(at(now), now);
    _isRunning = running;
    _runningSince = now;
}

void PositionClock::jump(double seconds, Uptime now)
{
    set(seconds, now);
    _lastReading = {seconds, now};
    _certainUntil = now + catchingUp;
}

bool PositionClock::observe(double seconds, Uptime now)
{
    if (now < _certainUntil) {
        return false;
    }
    const bool isFrozen = (_frozenAt && isSame(*_frozenAt, seconds)) || hasStoodStill(seconds, now);
    _lastReading = {seconds, now};
    if (isFrozen) {
        _frozenAt = seconds;
        return false;
    }
    _frozenAt.reset();
    const bool differs = std::abs(within(seconds) - at(now)) > noticeableDifference;
    set(seconds, now);
    return differs;
}

void PositionClock::set(double seconds, Uptime now)
{
    _base = seconds;
    _since = now;
}

bool PositionClock::hasStoodStill(double seconds, Uptime now) const
{
    return _isRunning && _lastReading && isSame(_lastReading->seconds, seconds) &&
           now - std::max(_lastReading->time, _runningSince) > leastObservation;
}
