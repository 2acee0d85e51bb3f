#pragma once

#include <QString>

/// A span of time in whole seconds, "3:07"; the minutes go on beyond 59. Less than none is "0:00".
QString clockText(double seconds);
