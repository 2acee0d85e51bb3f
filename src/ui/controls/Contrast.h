#pragma once

#include <QColor>

/// How well one colour can be told from another, by WCAG 2, and colours made of others.
namespace Contrast {

/// Of a part of a control against what it lies on.
inline constexpr double leastOfParts = 3;
/// Of text against what it lies on.
inline constexpr double leastOfText = 4.5;

/// 0 for black to 1 for white.
double luminance(const QColor& color);

/// From 1 for the same colour to 21 for black and white. Opacities do not count.
double between(const QColor& a, const QColor& b);

/// `part` of one colour in another: 0 gives `ground`, 1 gives `ink`. Opaque.
QColor mixed(const QColor& ground, const QColor& ink, double part);

/// The colour with another opacity, 0 to 1.
QColor withOpacity(QColor color, double opacity);

/// The colour, moved towards the ink no further than it takes to be seen as a part of a control on the
/// ground.
QColor visibleOn(const QColor& ground, const QColor& color, const QColor& ink);

} // namespace Contrast
