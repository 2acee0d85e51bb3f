#include "audio/VisualizerBars.h"

#include <algorithm>
#include <cmath>

namespace {

struct BarProfile {
    double react;
    double speed;
    double jitter;
    double gravity;
};

// Bass to treble.
constexpr BarProfile barProfiles[] = {
    {.react = 0.9, .speed = 1.8, .jitter = 0.15, .gravity = 0.55},
    {.react = 1.0, .speed = 2.6, .jitter = 0.25, .gravity = 0.7},
    {.react = 0.85, .speed = 3.3, .jitter = 0.3, .gravity = 0.8},
    {.react = 0.7, .speed = 4.1, .jitter = 0.4, .gravity = 0.9},
};

constexpr double settleDelays[] = {0.15, 0.08, 0.04, 0.0}; // seconds
constexpr double beat = 0.46875;                           // seconds at 128 beats a minute

double heightAtLevel(double level)
{
    return VisualizerBars::minBarHeight +
           (VisualizerBars::totalHeight - VisualizerBars::minBarHeight) * std::clamp(level, 0.0, 1.0);
}

/// How loud a drum is that is struck every `period` seconds: 0 to 1, up at once and then away.
double drum(double time, double period, double attack, double decay)
{
    const double part = std::fmod(time, period) / period;
    return part < attack ? part / attack : std::exp(-decay * (part - attack));
}

} // namespace

double VisualizerBars::liveHeight(int bar, Uptime now)
{
    const BarProfile& profile = barProfiles[bar];
    const double time = now.seconds;
    const double phase = bar * 0.8;
    const double kick = drum(phase + time, beat, 0.05, 4);
    const double snare = drum(phase + 0.5 + time, 2 * beat, 0.03, 1 / 0.4);
    const double shift = bar * 11.7;
    const double ripple = std::sin(shift * 1.7 + time * profile.speed * 2.4) * 0.5;
    const double swell = std::sin(shift + time * profile.speed * 0.6) * 0.5 + 0.5;
    return heightAtLevel(profile.react *
                         (swell * 0.55 + (ripple + 0.5) * 0.2 + std::max(kick, snare * 0.7) * 0.3));
}

double VisualizerBars::barHeight(int bar, Uptime now) const
{
    if (isPlaying) {
        return isLive && bar < bands.size() ? heightAtLevel(bands[bar]) : liveHeight(bar, now);
    }
    if (!stoppedAt) {
        return minBarHeight;
    }
    const double start = liveHeight(bar, *stoppedAt);
    const double fallen = (now - *stoppedAt) - settleDelays[bar];
    if (fallen < 0) {
        return start;
    }
    const double part = std::min(fallen / windDownDuration, 1.0);
    const double eased = 1 - std::pow(1 - part, 3);
    return start + eased * (minBarHeight - start);
}

bool VisualizerBars::needsAnimation(Uptime now) const
{
    return isPlaying || (stoppedAt && now - *stoppedAt < windDownDuration + afterglow);
}
