#include "ui/pill/PillColors.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double leastContrast = 3; // of a part of a control against what it lies on, by WCAG 2

QColor withOpacity(QColor colour, double opacity)
{
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

/// `part` of one colour in another: 0 gives `ground`, 1 gives `ink`.
QColor mixed(const QColor& ground, const QColor& ink, double part)
{
    const auto channel = [part](double a, double b) { return static_cast<float>(a + (b - a) * part); };
    return QColor::fromRgbF(channel(ground.redF(), ink.redF()), channel(ground.greenF(), ink.greenF()),
                            channel(ground.blueF(), ink.blueF()));
}

double luminance(const QColor& colour)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const auto [darker, brighter] = std::minmax({luminance(a), luminance(b)});
    return (brighter + 0.05) / (darker + 0.05);
}

/// The colour, moved towards the ink no further than it takes to be seen on the ground.
QColor visibleOn(const QColor& ground, const QColor& colour, const QColor& ink)
{
    constexpr int steps = 50;
    for (int step = 0; step < steps; ++step) {
        const QColor nearby = mixed(colour, ink, static_cast<double>(step) / steps);
        if (contrast(nearby, ground) >= leastContrast) {
            return nearby;
        }
    }
    return ink;
}

} // namespace

PillColors PillColors::forDesktop(bool isDark, const std::optional<QColor>& tint)
{
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
        colors.fill = visibleOn(mixed(colors.background, ink, trackOpacity), *tint, ink);
        colors.highlight = withOpacity(colors.fill, isDark ? 0.26 : 0.2);
        colors.pressed = withOpacity(colors.fill, isDark ? 0.36 : 0.32);
    }
    return colors;
}
