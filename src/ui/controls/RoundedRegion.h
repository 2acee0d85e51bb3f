#pragma once

#include <QRegion>

/// The pixels of a rectangle with round corners, for windows that are not blended with what is below them.
QRegion roundedRegion(QSize size, double radius);
