#include "ui/settings/WindowColors.h"

#include "ui/controls/Contrast.h"

WindowColors WindowColors::forDesktop(bool isDark)
{
    const QColor ink = isDark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    const auto inkAt = [&ink](double opacity) { return Contrast::withOpacity(ink, opacity); };
    return {
        .background = isDark ? QColor(29, 29, 32) : QColor(245, 245, 248),
        .sidebar = isDark ? QColor(38, 38, 42) : QColor(234, 234, 239),
        .card = isDark ? QColor(43, 43, 47) : QColor(255, 255, 255),
        .line = inkAt(isDark ? 0.09 : 0.085),
        .text = inkAt(isDark ? 0.94 : 0.88),
        .dimmedText = inkAt(isDark ? 0.62 : 0.6),
        .accent = isDark ? QColor(48, 121, 184) : QColor(36, 116, 184),
        .accentPressed = isDark ? QColor(62, 139, 204) : QColor(26, 94, 153),
        .accentText = QColor(255, 255, 255),
        .focus = isDark ? QColor(109, 179, 234) : QColor(36, 116, 184),
        .face = isDark ? QColor(66, 66, 71) : QColor(255, 255, 255),
        .faceBorder = inkAt(isDark ? 0.12 : 0.18),
        .hovered = inkAt(isDark ? 0.07 : 0.045),
        .pressed = inkAt(isDark ? 0.15 : 0.1),
        .well = inkAt(isDark ? 0.1 : 0.07),
        .track = inkAt(isDark ? 0.4 : 0.42),
        .good = isDark ? QColor(86, 190, 116) : QColor(31, 132, 62),
        .warning = isDark ? QColor(240, 170, 90) : QColor(166, 88, 10),
    };
}
