#include "linux/mpris/PositionClock.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double samePosition = 0.001;   // seconds
constexpr double leastObservation = 0.5; // seconds of playing before a standstill means anything
constexpr double longestDelay = 1;       // seconds that a true answer may be late
constexpr double longestDoubt = 5;       // seconds
constexpr double unnoticedDelay = 0.02;  // seconds
constexpr int readingsInDoubt = 3;
constexpr double unnoticedDifference = 0.01; // seconds
constexpr double noticeableDifference = 1.0; // seconds

bool isSame(double a, double b)
{
    return std::abs(a - b) < samePosition;
}

} // namespace

double PositionClock::at(Uptime now) const
{
    return within(place(now));
}

double PositionClock::place(Uptime now) const
{
    const double reckoned = _base + (now - _since) * rate();
    return _length ? std::min(reckoned, *_length) : reckoned;
}

bool PositionClock::agrees(const PositionClock& other, Uptime now) const
{
    return rate() == other.rate() && std::abs(place(now) - other.place(now)) < unnoticedDifference;
}

double PositionClock::within(double seconds) const
{
    const double position = std::max(0.0, seconds);
    return _length ? std::min(position, *_length) : position;
}

void PositionClock::setRate(double rate, Uptime now)
{
    if (!std::isfinite(rate) || rate <= 0 || rate == _rate) {
        return;
    }
    set(place(now), now);
    _rate = rate;
    doubt(now);
    _isNextTaken = true; // what was made ready at the old rate is still to be heard
}

void PositionClock::setRunning(bool running, Uptime now)
{
    if (running == _isRunning) {
        return;
    }
    set(place(now), now);
    _isRunning = running;
    _runningSince = now;
    doubt(now);
}

void PositionClock::restart(Uptime now)
{
    const double before = place(now);
    jump(0, now);
    _trackBefore = {before, now};
    _readingsWanted = readingsInDoubt; // it may have been announced early
}

void PositionClock::jump(double seconds, Uptime now)
{
    set(seconds, now);
    _lastReading = {seconds, now};
    _certainUntil = now + catchingUp;
    _trackBefore.reset();
    _readingsWanted = 0;
    _doubtSince = Uptime::distantPast(); // the first readings after it may raise doubt at once
}

bool PositionClock::observe(double seconds, Uptime now)
{
    if (now < _certainUntil) {
        if (isOfNewTrack(seconds, now)) {
            set(seconds, now);
        }
        _readingsWanted = std::max(0, _readingsWanted - 1);
        return false;
    }
    const bool isFrozen = (_frozenAt && isSame(*_frozenAt, seconds)) || hasStoodStill(seconds, now);
    _lastReading = {seconds, now};
    if (isFrozen) {
        _frozenAt = seconds;
        _readingsWanted = std::max(0, _readingsWanted - 1);
        return false;
    }
    _frozenAt.reset();
    const bool differs = std::abs(within(seconds) - at(now)) > noticeableDifference;
    weigh(seconds, now);
    return differs;
}

/// Takes the reading over at once if it is ahead or far behind. Of those a little behind, the best is taken
/// when no more are wanted.
void PositionClock::weigh(double seconds, Uptime now)
{
    const double late = place(now) - seconds;
    const bool isWholeSecond = seconds == std::floor(seconds);
    const bool isTaken = late < 0 || late > longestDelay || std::exchange(_isNextTaken, false) ||
                         (!_isRunning && !isWholeSecond);
    if (isTaken) {
        set(seconds, now);
    }
    if (std::abs(late) > unnoticedDelay && now - _doubtSince > longestDoubt) {
        doubt(now);
    }
    if (_readingsWanted == 0) {
        return;
    }
    _leastLate = isTaken ? 0 : std::min(_leastLate, late);
    if (--_readingsWanted == 0 && !isWholeSecond) {
        set(place(now) - _leastLate, now);
    }
}

/// Begins to compare readings.
void PositionClock::doubt(Uptime now)
{
    _readingsWanted = readingsInDoubt;
    _leastLate = longestDelay;
    _doubtSince = now;
}

/// Whether a reading that comes right after a track has begun is of that track and not of the one before, nor
/// the nought of those who do not know.
bool PositionClock::isOfNewTrack(double seconds, Uptime now) const
{
    if (!_trackBefore || seconds == 0 || seconds <= -noticeableDifference) {
        return false;
    }
    const auto isNear = [seconds](double place) { return std::abs(seconds - place) < noticeableDifference; };
    const double before = _trackBefore->seconds + (now - _trackBefore->time) * rate();
    return isNear(place(now)) && !isNear(before) && !isNear(_trackBefore->seconds);
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
