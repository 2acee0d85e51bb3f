#include "ui/menu/MenuColors.h"

#include "ui/controls/Contrast.h"

MenuColors MenuColors::forDesktop(bool isDark)
{
    const QColor ink = isDark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    const auto inkAt = [&ink](double opacity) { return Contrast::withOpacity(ink, opacity); };
    return {
        .background = isDark ? QColor(38, 38, 41) : QColor(248, 248, 250),
        .text = inkAt(isDark ? 0.94 : 0.88),
        .dimmedText = inkAt(isDark ? 0.6 : 0.58),
        .separator = inkAt(isDark ? 0.13 : 0.11),
        .hovered = inkAt(isDark ? 0.13 : 0.075),
        .pressed = inkAt(isDark ? 0.22 : 0.14),
        .expanded = inkAt(isDark ? 0.06 : 0.035),
    };
}
