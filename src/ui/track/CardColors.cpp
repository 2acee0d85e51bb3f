#include "ui/track/CardColors.h"

#include "ui/controls/Contrast.h"

CardColors CardColors::on(const QColor& ground, bool isDark, const std::optional<QColor>& tint)
{
    const QColor ink = isDark ? Qt::white : Qt::black;
    const auto inkAt = [&ink](double opacity) { return Contrast::withOpacity(ink, opacity); };
    const double trackOpacity = isDark ? 0.22 : 0.16;
    CardColors colors{
        .text = inkAt(isDark ? 0.97 : 0.9),
        .dimmedText = inkAt(isDark ? 0.68 : 0.66),
        .quietText = inkAt(isDark ? 0.68 : 0.66),
        .plate = inkAt(isDark ? 0.1 : 0.07),
        .highlight = inkAt(isDark ? 0.14 : 0.08),
        .pressed = inkAt(isDark ? 0.24 : 0.15),
        .track = inkAt(trackOpacity),
        .fill = inkAt(isDark ? 0.92 : 0.82),
        .focus = inkAt(0.7),
        .sheen = QColor::fromRgbF(1, 1, 1, isDark ? 0.14F : 0.45F),
        .outline = inkAt(isDark ? 0.1 : 0.06),
    };
    if (tint) {
        colors.fill = Contrast::visibleOn(Contrast::mixed(ground, ink, trackOpacity), *tint, ink);
    }
    return colors;
}
