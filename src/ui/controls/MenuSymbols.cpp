#include "ui/controls/MenuSymbols.h"

#include <QPainterPathStroker>

namespace {

constexpr double lineWidth = 0.09;

/// The area of a line drawn along a path with a round pen.
QPainterPath drawn(const QPainterPath& path, double width)
{
    QPainterPathStroker pen;
    pen.setWidth(width);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen.createStroke(path).simplified();
}

QPainterPath polyline(std::initializer_list<QPointF> points)
{
    QPainterPath path(*points.begin());
    for (const QPointF& point : points) {
        path.lineTo(point);
    }
    return path;
}

QPainterPath heart()
{
    QPainterPath path(QPointF(0.5, 0.9));
    path.cubicTo(0.3, 0.76, 0.06, 0.58, 0.06, 0.36);
    path.cubicTo(0.06, 0.21, 0.17, 0.11, 0.29, 0.11);
    path.cubicTo(0.38, 0.11, 0.46, 0.16, 0.5, 0.25);
    path.cubicTo(0.54, 0.16, 0.62, 0.11, 0.71, 0.11);
    path.cubicTo(0.83, 0.11, 0.94, 0.21, 0.94, 0.36);
    path.cubicTo(0.94, 0.58, 0.7, 0.76, 0.5, 0.9);
    path.closeSubpath();
    return path;
}

/// The hand without its cuff: four fingers to the right, the thumb down.
QPainterPath hand()
{
    QPainterPath path(QPointF(0.3, 0.16));
    path.lineTo(0.72, 0.16);
    path.cubicTo(0.82, 0.16, 0.86, 0.24, 0.83, 0.3);
    path.cubicTo(0.92, 0.33, 0.93, 0.42, 0.88, 0.46);
    path.cubicTo(0.95, 0.51, 0.93, 0.61, 0.83, 0.61);
    path.lineTo(0.6, 0.61);
    path.cubicTo(0.63, 0.7, 0.64, 0.78, 0.61, 0.85);
    path.cubicTo(0.58, 0.92, 0.5, 0.91, 0.48, 0.84);
    path.cubicTo(0.46, 0.74, 0.4, 0.62, 0.3, 0.56);
    path.closeSubpath();
    return path;
}

QPainterPath cuff()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(0.07, 0.14, 0.13, 0.44), 0.05, 0.05);
    return path;
}

QPainterPath bulletList()
{
    constexpr double dot = 0.055;
    constexpr double lineHeight = 0.08;
    QPainterPath path;
    for (const double y : {0.2, 0.5, 0.8}) {
        path.addEllipse(QPointF(0.11, y), dot, dot);
        path.addRoundedRect(QRectF(0.28, y - lineHeight / 2, 0.66, lineHeight), lineHeight / 2,
                            lineHeight / 2);
    }
    return path;
}

} // namespace

QPainterPath menuSymbol(const QString& name)
{
    constexpr double boldLine = 0.13;
    if (name == QStringLiteral("checkmark")) {
        return drawn(polyline({{0.12, 0.54}, {0.38, 0.8}, {0.88, 0.2}}), boldLine);
    }
    if (name == QStringLiteral("chevron.right")) {
        return drawn(polyline({{0.34, 0.14}, {0.7, 0.5}, {0.34, 0.86}}), boldLine);
    }
    if (name == QStringLiteral("heart")) {
        return drawn(heart(), lineWidth);
    }
    if (name == QStringLiteral("heart.fill")) {
        return heart();
    }
    if (name == QStringLiteral("hand.thumbsdown")) {
        return drawn(hand(), lineWidth).united(drawn(cuff(), lineWidth));
    }
    if (name == QStringLiteral("hand.thumbsdown.fill")) {
        return hand().united(cuff());
    }
    if (name == QStringLiteral("list.bullet")) {
        return bulletList();
    }
    return {};
}
