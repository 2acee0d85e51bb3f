#include "ui/widget/WidgetPlacement.h"

#include "ui/widget/WidgetLayout.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr QPointF firstInset(320, 40); // of the upper left corner from the screen's upper right one
constexpr QPointF withoutScreen(100, 100);
constexpr QSizeF hold(60, 30); // what can be taken hold of
constexpr double edgeWidth = 8;
constexpr double cornerWidth = 16;

QRectF within(QRectF frame, const QRectF& screen)
{
    const double left = std::min(frame.left(), screen.right() - frame.width());
    const double top = std::min(frame.top(), screen.bottom() - frame.height());
    frame.moveTopLeft({std::max(left, screen.left()), std::max(top, screen.top())});
    return frame;
}

double distance(const QRectF& frame, const QRectF& screen)
{
    const QPointF way = within(frame, screen).topLeft() - frame.topLeft();
    return std::hypot(way.x(), way.y());
}

} // namespace

QRectF WidgetPlacement::first(const std::optional<QRectF>& screen)
{
    if (!screen) {
        return {withoutScreen, firstSize};
    }
    return {QPointF(screen->right() - firstInset.x(), screen->top() + firstInset.y()), firstSize};
}

QRectF WidgetPlacement::reachable(const QRectF& frame, const QList<QRectF>& screens)
{
    const QSizeF size = frame.size().expandedTo(WidgetLayout::smallest).boundedTo(WidgetLayout::largest);
    const QRectF wanted(frame.topLeft(), size);
    const auto canBeHeld = [&wanted](const QRectF& screen) {
        const QRectF seen = wanted.intersected(screen);
        return seen.width() >= hold.width() && seen.height() >= hold.height();
    };
    if (screens.isEmpty() || std::any_of(screens.begin(), screens.end(), canBeHeld)) {
        return wanted;
    }
    return within(wanted,
                  *std::min_element(screens.begin(), screens.end(), [&](const QRectF& a, const QRectF& b) {
                      return distance(wanted, a) < distance(wanted, b);
                  }));
}

QRectF WidgetPlacement::ofHeight(const QRectF& frame, double height, const QRectF& screen)
{
    QRectF resized(frame.topLeft(), QSizeF(frame.width(), height));
    if (frame.bottom() <= screen.bottom() && resized.bottom() > screen.bottom()) {
        resized.moveBottom(screen.bottom());
    }
    return resized;
}

Qt::Edges WidgetPlacement::edgesAt(QPointF point, QSizeF size)
{
    const double right = size.width() - point.x();
    const double bottom = size.height() - point.y();
    if (std::min({point.x(), point.y(), right, bottom}) >= edgeWidth) {
        return {};
    }
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, point.x() < cornerWidth);
    edges.setFlag(Qt::RightEdge, right < cornerWidth);
    edges.setFlag(Qt::TopEdge, point.y() < cornerWidth);
    edges.setFlag(Qt::BottomEdge, bottom < cornerWidth);
    return edges;
}
