#include "ui/menu/MenuColors.h"

namespace {

QColor at(QColor colour, double opacity)
{
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

} // namespace

MenuColors MenuColors::forDesktop(bool isDark, bool isBlended)
{
    const QColor ink = isDark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    const double glass = isBlended ? 0.93 : 1;
    return {
        .top = at(isDark ? QColor(54, 54, 60) : QColor(253, 253, 255), glass),
        .bottom = at(isDark ? QColor(38, 38, 43) : QColor(240, 240, 244), glass),
        .border = isDark ? at(QColor(0, 0, 0), 0.55) : at(ink, 0.16),
        .sheen = at(QColor(255, 255, 255), isDark ? 0.14 : 0.75),
        .text = at(ink, isDark ? 0.94 : 0.88),
        .dimmedText = at(ink, isDark ? 0.6 : 0.58),
        .separator = at(ink, isDark ? 0.13 : 0.11),
        .hovered = at(ink, isDark ? 0.13 : 0.075),
        .pressed = at(ink, isDark ? 0.22 : 0.14),
        .expanded = at(ink, isDark ? 0.06 : 0.035),
    };
}
