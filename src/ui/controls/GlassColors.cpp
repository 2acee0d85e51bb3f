#include "ui/controls/GlassColors.h"

GlassColors GlassColors::forDesktop(bool isDark, bool isBlended)
{
    const auto at = [](QColor colour, double opacity) {
        colour.setAlphaF(static_cast<float>(opacity));
        return colour;
    };
    const double glass = isBlended ? 0.93 : 1;
    return {
        .top = at(isDark ? QColor(54, 54, 60) : QColor(253, 253, 255), glass),
        .bottom = at(isDark ? QColor(38, 38, 43) : QColor(240, 240, 244), glass),
        .border = at(QColor(0, 0, 0), isDark ? 0.55 : 0.16),
        .sheen = at(QColor(255, 255, 255), isDark ? 0.14 : 0.75),
    };
}
