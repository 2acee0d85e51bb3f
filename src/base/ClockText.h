#pragma once

#include <QString>

/// A span of time in whole seconds, "3:07"; the minutes go on beyond 59. Less than none is "0:00".
QString clockText(double seconds);

/// What is left of a track, "-3:07"; empty when its duration is unknown, which is 0. In seconds.
QString timeRemainingText(double duration, double elapsed);
