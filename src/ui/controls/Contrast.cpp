#include "ui/controls/Contrast.h"

#include <algorithm>
#include <cmath>

double Contrast::luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast::between(const QColor& a, const QColor& b)
{
    const auto [darker, brighter] = std::minmax({luminance(a), luminance(b)});
    return (brighter + 0.05) / (darker + 0.05);
}

QColor Contrast::mixed(const QColor& ground, const QColor& ink, double part)
{
    const auto channel = [part](double a, double b) { return static_cast<float>(a + (b - a) * part); };
    return QColor::fromRgbF(channel(ground.redF(), ink.redF()), channel(ground.greenF(), ink.greenF()),
                            channel(ground.blueF(), ink.blueF()));
}

QColor Contrast::withOpacity(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QColor Contrast::visibleOn(const QColor& ground, const QColor& color, const QColor& ink)
{
    constexpr int steps = 50;
    for (int step = 0; step < steps; ++step) {
        const QColor nearby = mixed(color, ink, static_cast<double>(step) / steps);
        if (between(nearby, ground) >= leastOfParts) {
            return nearby;
        }
    }
    return ink;
}
