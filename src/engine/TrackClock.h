#pragma once

#include "base/Uptime.h"

#include <optional>

/// Where a track is at any time, reckoned from a time when that was known.
struct TrackClock {
    double place = 0;  ///< seconds from the start of the track, at the time `since`; below 0 before it begins
    Uptime since;      ///< when it was there
    double rate = 0;   ///< track seconds that pass in a second; 0 while it stands still
    double length = 0; ///< of the track, in seconds; 0 when unknown

    /// Seconds from the start of the track: 0 or more, and no more than the length if that is known.
    double at(Uptime now) const;

    /// The same, but below 0 while the track is announced and has yet to begin.
    double reckoned(Uptime now) const;

    /// Seconds, above 0, from `now` until the track comes to a place ahead, in seconds from its start. None
    /// when it is past it, or does not get there as things stand.
    std::optional<double> until(double ahead, Uptime now) const;

    /// Whether both reckon the same from `now` on, but for what nobody sees or hears.
    bool agrees(const TrackClock& other, Uptime now) const;

    friend bool operator==(const TrackClock&, const TrackClock&) = default;
};
