#pragma once

#include "base/Uptime.h"

#include <optional>

/// Where a player is in its track, reckoned from the last point known and the rate. Players do not announce
/// their position as it moves, and some answer it wrongly: always 0, only as of the last seek, or for a
/// moment still as before it. So a reading that stands still while the player plays is not believed, and none
/// is right after the position was certain, but where a track has begun and the reading can be of no other.
///
/// Nor do players answer to the moment: they look at where they are some times a second, or count whole
/// seconds, and a true answer may be late by that. So one that is a little behind the reckoning means nothing
/// by itself; of three, the one furthest ahead is right.
class PositionClock
{
public:
    /// Seconds that a player is given to catch up with what it has announced or was told.
    static constexpr double catchingUp = 1;

    /// Seconds from the start of the track: 0 or more, and no more than the length if that is known.
    double at(Uptime now) const;

    /// The same, but below 0 while a track that was announced early has yet to begin.
    double place(Uptime now) const;

    /// Track seconds that pass in a second; 0 while it does not run.
    double rate() const { return _isRunning ? _rate : 0; }

    /// Whether both reckon the same from `now` on, to a hundredth of a second.
    bool agrees(const PositionClock& other, Uptime now) const;

    /// Seconds; none when unknown.
    void setLength(std::optional<double> length) { _length = length; }

    /// Track seconds that pass in a second while running. Rates that are not above 0 are ignored.
    void setRate(double rate, Uptime now);
    void setRunning(bool running, Uptime now);

    /// A new track begins.
    void restart(Uptime now);

    /// The position is certain: the player has announced it, or it was told to go there.
    void jump(double seconds, Uptime now);

    /// The player's answer to the question where it is, or what it says by the way. Returns whether it was
    /// believed and differs from the reckoning by more than a second.
    bool observe(double seconds, Uptime now);

    /// The player has answered the question without saying where it is, which it will not do the next time,
    /// either.
    void observeNothing() { _readingsWanted = 0; }

    /// Whether a few more readings are wanted, some tenths of a second apart.
    bool isInDoubt() const { return _isRunning && _readingsWanted > 0; }

private:
    struct Reading {
        double seconds;
        Uptime time;
    };

    double within(double seconds) const;
    void set(double seconds, Uptime now);
    void doubt(Uptime now);
    void weigh(double seconds, Uptime now);
    bool isOfNewTrack(double seconds, Uptime now) const;
    bool hasStoodStill(double seconds, Uptime now) const;

    double _base = 0;
    Uptime _since;
    double _rate = 1;
    bool _isRunning = false;
    Uptime _runningSince;
    std::optional<double> _length;
    std::optional<Reading> _lastReading;
    std::optional<double> _frozenAt;
    std::optional<Reading> _trackBefore; ///< where that was when this one began
    Uptime _doubtSince = Uptime::distantPast();
    int _readingsWanted = 0;
    bool _isNextTaken = false; ///< the next reading, whatever it is
    double _leastLate = 0;     ///< seconds that the best of the readings since the doubt arose was behind
    Uptime _certainUntil = Uptime::distantPast();
};
