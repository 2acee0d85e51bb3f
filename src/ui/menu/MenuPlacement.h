#pragma once

#include <QRectF>

/// Where the glass menu lies: below the pill, their right edges in line, so that its top right corner stays
/// where it is while it grows and shrinks. One that is too wide for that moves to the right to stay on the
/// screen; of one that is too tall the lower part has to be scrolled to. In points, y downward.
QRectF menuPlacement(const QRectF& pill, QSizeF contents, const QRectF& screen);
