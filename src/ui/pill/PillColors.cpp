#include "ui/pill/PillColors.h"

#include "ui/controls/Contrast.h"

PillColors PillColors::forDesktop(bool isDark, const std::optional<QColor>& tint)
{
    using Contrast::withOpacity;
    const QColor ink = isDark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    const double trackOpacity = isDark ? 0.18 : 0.13;
    PillColors colors{
        .background = isDark ? QColor(38, 38, 41) : QColor(248, 248, 250),
        .border = withOpacity(ink, isDark ? 0.14 : 0.12),
        .text = withOpacity(ink, isDark ? 0.94 : 0.88),
        .dimmedText = withOpacity(ink, isDark ? 0.6 : 0.58),
        .bars = withOpacity(ink, isDark ? 0.85 : 0.68),
        .plate = withOpacity(ink, isDark ? 0.12 : 0.08),
        .highlight = withOpacity(ink, isDark ? 0.16 : 0.09),
        .pressed = withOpacity(ink, isDark ? 0.26 : 0.17),
        .track = withOpacity(ink, trackOpacity),
        .fill = withOpacity(ink, isDark ? 0.85 : 0.68),
    };
    if (tint) {
        colors.fill = Contrast::visibleOn(Contrast::mixed(colors.background, ink, trackOpacity), *tint, ink);
        colors.highlight = withOpacity(colors.fill, isDark ? 0.26 : 0.2);
        colors.pressed = withOpacity(colors.fill, isDark ? 0.36 : 0.32);
    }
    return colors;
}
