#include "ui/controls/GlassColors.h"

#include "ui/controls/Contrast.h"

GlassColors GlassColors::forDesktop(bool isDark, bool isBlended)
{
    using Contrast::withOpacity;
    const double glass = isBlended ? 0.93 : 1;
    return {
        .top = withOpacity(isDark ? QColor(54, 54, 60) : QColor(253, 253, 255), glass),
        .bottom = withOpacity(isDark ? QColor(38, 38, 43) : QColor(240, 240, 244), glass),
        .border = withOpacity(QColor(0, 0, 0), isDark ? 0.55 : 0.16),
        .sheen = withOpacity(QColor(255, 255, 255), isDark ? 0.14 : 0.75),
    };
}
