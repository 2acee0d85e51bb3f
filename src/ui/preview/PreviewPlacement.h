#pragma once

#include <QRectF>

/// Where the preview lies: hung from the middle of the pill, at its own size. Near a side of the screen it
/// keeps clear of that; on a screen too narrow for it, of the left one.
QRectF previewPlacement(const QRectF& pill, QSizeF contents, const QRectF& screen);
