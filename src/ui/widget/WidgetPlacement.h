#pragma once

#include <QList>
#include <QRectF>

#include <optional>

/// Where the widget lies, in points. The free part of a screen is the one that no panel takes.
namespace WidgetPlacement {

inline constexpr QSizeF firstSize{300, 140};

/// Where a widget opens that has never been moved: near the upper right corner of the free part of the main
/// screen, if there is one.
QRectF first(const std::optional<QRectF>& screen);

/// The frame, with its size kept within the limits, if enough of it lies on one of the screens to take hold
/// of it; else as near to that as it lies within one whole.
QRectF reachable(const QRectF& frame, const QList<QRectF>& screens);

/// The frame with another height: the upper edge stays, unless the lower one would leave a screen that it lay
/// on.
QRectF ofHeight(const QRectF& frame, double height, const QRectF& screen);

/// Which edges a press takes hold of; none in the middle.
Qt::Edges edgesAt(QPointF point, QSizeF size);

} // namespace WidgetPlacement
