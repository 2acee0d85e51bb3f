#include "engine/TrackClock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double unnoticed = 0.005; // seconds

double reckoned(const TrackClock& clock, Uptime now)
{
    return clock.rate > 0 ? clock.place + (now - clock.since) * clock.rate : clock.place;
}

} // namespace

double TrackClock::at(Uptime now) const
{
    const double seconds = std::max(0.0, reckoned(*this, now));
    return length > 0 ? std::min(seconds, length) : seconds;
}

std::optional<double> TrackClock::until(double ahead, Uptime now) const
{
    const double distance = ahead - reckoned(*this, now);
    const bool isBehindEnd = length > 0 && ahead > length;
    if (!(rate > 0) || !(distance > 0) || isBehindEnd) {
        return std::nullopt;
    }
    return distance / rate;
}

bool TrackClock::agrees(const TrackClock& other, Uptime now) const
{
    return rate == other.rate && length == other.length &&
           std::abs(reckoned(*this, now) - reckoned(other, now)) < unnoticed;
}
