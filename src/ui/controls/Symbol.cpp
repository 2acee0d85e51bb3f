#include "ui/controls/Symbol.h"

#include "ui/controls/MenuSymbols.h"
#include "ui/controls/WindowSymbols.h"

#include <QTransform>

namespace {

// Drawn in a unit square.
QPainterPath triangle(double left, double right, double top, double bottom)
{
    QPainterPath path;
    path.moveTo(left, top);
    path.lineTo(right, (top + bottom) / 2);
    path.lineTo(left, bottom);
    path.closeSubpath();
    return path;
}

QPainterPath forward()
{
    QPainterPath path = triangle(0.04, 0.52, 0.2, 0.8);
    path.addPath(triangle(0.5, 0.98, 0.2, 0.8));
    return path;
}

QPainterPath pause()
{
    constexpr double rounding = 0.06;
    QPainterPath path;
    path.addRoundedRect(QRectF(0.18, 0.12, 0.23, 0.76), rounding, rounding);
    path.addRoundedRect(QRectF(0.59, 0.12, 0.23, 0.76), rounding, rounding);
    return path;
}

/// Two quavers under one beam.
QPainterPath note()
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    const QPolygonF beam({{0.3, 0.16}, {0.92, 0.04}, {0.92, 0.24}, {0.3, 0.36}});
    path.addPolygon(beam);
    path.closeSubpath();
    for (const auto& [stem, foot] : {std::pair(0.3, 0.82), {0.84, 0.7}}) {
        path.addRect(stem, foot - 0.58, 0.08, 0.58);
        path.addEllipse(QPointF(stem - 0.075, foot), 0.155, 0.13);
    }
    // Curves are flattened to fractions of the unit as the path is simplified.
    const QTransform larger = QTransform::fromScale(1000, 1000);
    return larger.inverted().map(larger.map(path).simplified());
}

QPainterPath unitOutline(const QString& name)
{
    if (name == QStringLiteral("play.fill")) {
        return triangle(0.2, 0.92, 0.1, 0.9);
    }
    if (name == QStringLiteral("pause.fill")) {
        return pause();
    }
    if (name == QStringLiteral("forward.fill")) {
        return forward();
    }
    if (name == QStringLiteral("backward.fill")) {
        return QTransform(-1, 0, 0, 1, 1, 0).map(forward());
    }
    if (name == QStringLiteral("music.note")) {
        return note();
    }
    const QPainterPath ofMenu = menuSymbol(name);
    return ofMenu.isEmpty() ? windowSymbol(name) : ofMenu;
}

} // namespace

QPainterPath symbolOutline(const QString& name, double side)
{
    return QTransform::fromScale(side, side).map(unitOutline(name));
}
