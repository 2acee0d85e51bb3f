#pragma once

#include "base/Uptime.h"

#include <optional>

/// Where a player is in its track, reckoned from the last point known and the rate. Players do not announce
/// their position as it moves, and some answer it wrongly: always 0, or only as of the last seek. A reading
/// that stands still while the player plays is therefore not believed.
class PositionClock
{
public:
    /// Seconds from the start of the track: 0 or more, and no more than the length if that is known.
    double at(Uptime now) const;

    /// Seconds; none when unknown.
    void setLength(std::optional<double> length) { _length = length; }

    /// Track seconds that pass in a second while running. Rates that are not above 0 are ignored.
    void setRate(double rate, Uptime now);
    void setRunning(bool running, Uptime now);

    /// A new track begins.
    void restart(Uptime now) { set(0, now); }

    /// The position is certain: the player has announced it, or it was told to go there.
    void jump(double seconds, Uptime now);

    /// The player's answer to the question where it is. Returns whether it was believed and differs from the
    /// reckoning by more than a second.
    bool observe(double seconds, Uptime now);

private:
    struct Reading {
        double seconds;
        Uptime time;
    };

    void set(double seconds, Uptime now);
    bool hasStoodStill(double seconds, Uptime now) const;

    double _base = 0;
    Uptime _since;
    double _rate = 1;
    bool _isRunning = false;
    Uptime _runningSince;
    std::optional<double> _length;
    std::optional<Reading> _lastReading;
    std::optional<double> _frozenAt;
};
