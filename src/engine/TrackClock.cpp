#include "engine/TrackClock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double unnoticed = 0.005; // seconds

} // namespace

double TrackClock::at(Uptime now) const
{
    return std::max(0.0, reckoned(now));
}

double TrackClock::reckoned(Uptime now) const
{
    const double seconds = rate > 0 ? place + (now - since) * rate : place;
    return length > 0 ? std::min(seconds, length) : seconds;
}

std::optional<double> TrackClock::until(double ahead, Uptime now) const
{
    const double distance = ahead - reckoned(now);
    const bool isBehindEnd = length > 0 && ahead > length;
    if (!(rate > 0) || !(distance > 0) || isBehindEnd) {
        return std::nullopt;
    }
    return distance / rate;
}

bool TrackClock::agrees(const TrackClock& other, Uptime now) const
{
    return rate == other.rate && length == other.length &&
           std::abs(reckoned(now) - other.reckoned(now)) < unnoticed;
}
