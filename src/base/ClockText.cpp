#include "base/ClockText.h"

#include <algorithm>

QString clockText(double seconds)
{
    constexpr int secondsAMinute = 60;
    const auto whole = static_cast<qint64>(std::max(0.0, seconds));
    return QStringLiteral("%1:%2")
        .arg(whole / secondsAMinute)
        .arg(whole % secondsAMinute, 2, 10, QLatin1Char('0'));
}

QString timeRemainingText(double duration, double elapsed)
{
    return duration > 0 ? u'-' + clockText(duration - elapsed) : QString();
}
