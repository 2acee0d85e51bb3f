#pragma once

#include <QSize>

/// The least size of a window, in points, in which Qt Quick's software renderer paints all pixels of a
/// content of this size. It leaves out what is behind the last whole point of a window's pixels, as the last
/// pixel of the 231 that 185 points have at a scale of 1.25.
QSize paintedWindowSize(QSize content, double scale);
