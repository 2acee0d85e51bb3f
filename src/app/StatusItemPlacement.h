#pragma once

#include <QRect>

/// Where a status item of a width lies on a screen. Its place is kept as the distance of its right edge from
/// the screen's, so that it stays put when it or the screen changes its width.
namespace StatusItemPlacement {

/// The item's rectangle, kept on the screen whole; a wider one keeps its left edge on it.
QRect frame(const QRect& screen, QSize size, double rightInset);

/// The distance that a rectangle's place comes to, in points; 0 or more.
double rightInset(const QRect& screen, const QRect& frame);

} // namespace StatusItemPlacement
