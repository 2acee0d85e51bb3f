#pragma once

#include "base/Uptime.h"

#include <QList>

#include <optional>

/// The four bars of the level meter at a moment: dancing while music plays, to its real levels where they are
/// heard; falling one after the other, the bass last, when it stops. Heights are in points, times in seconds.
struct VisualizerBars {
    static constexpr int barCount = 4;
    static constexpr double barWidth = 2.0;
    static constexpr double barSpacing = 1.5;
    static constexpr double totalHeight = 11.0;
    static constexpr double minBarHeight = 2.0;
    static constexpr double windDownDuration = 0.8;
    static constexpr double afterglow = 0.5; ///< seconds for which a meter is drawn on after that

    bool isPlaying = false;
    std::optional<Uptime> stoppedAt; ///< none before the first stop and while music plays
    bool isLive = false;             ///< whether `bands` are levels of real sound
    QList<float> bands;              ///< bass to treble, each 0 to 1; a bar without a band dances by itself

    /// The dance to an imagined beat of 128 a minute: the height of a bar, 0 (bass) to 3 (treble).
    static double liveHeight(int bar, Uptime now);

    /// The height of a bar at a time not before `stoppedAt`.
    double barHeight(int bar, Uptime now) const;

    /// Whether the bars still move: while music plays, and until they have come to rest after it.
    bool needsAnimation(Uptime now) const;
};
