#pragma once

/// The motion of a text that is longer than its field: it rests, then runs round and round without a seam.
/// Lengths are in points, times in seconds.
namespace Marquee {

inline constexpr double speed = 30; ///< points per second
inline constexpr double gap = 35;   ///< between the end of the text and its next beginning
inline constexpr double pause = 0.6;

/// How far the text has moved to the left so long after it was shown: 0 down to -(textWidth + gap).
double offset(double sinceStart, double textWidth);

} // namespace Marquee
