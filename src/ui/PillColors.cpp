#include "ui/PillColors.h"

PillColors PillColors::forDesktop(bool isDark)
{
    const QColor ink = isDark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    const auto inkAt = [&ink](double opacity) {
        QColor colour = ink;
        colour.setAlphaF(static_cast<float>(opacity));
        return colour;
    };
    return {
        .background = isDark ? QColor(38, 38, 41) : QColor(248, 248, 250),
        .border = inkAt(isDark ? 0.14 : 0.12),
        .text = inkAt(isDark ? 0.94 : 0.88),
        .dimmedText = inkAt(isDark ? 0.6 : 0.58),
        .highlight = inkAt(isDark ? 0.16 : 0.09),
        .track = inkAt(isDark ? 0.18 : 0.13),
        .fill = inkAt(isDark ? 0.85 : 0.68),
    };
}
