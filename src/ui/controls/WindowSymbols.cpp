#include "ui/controls/WindowSymbols.h"

#include <QHash>
#include <QPainterPathStroker>
#include <QTransform>

namespace {

constexpr double lineWidth = 0.085;

/// Paths are made so much larger than a unit square: what joins and cuts them rounds to fractions of a point.
constexpr double grain = 200;

/// The area of a line drawn along a path with a round pen.
QPainterPath drawn(const QPainterPath& path, double width = lineWidth)
{
    QPainterPathStroker pen;
    pen.setWidth(width * grain);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen.createStroke(path).simplified();
}

QPainterPath polyline(std::initializer_list<QPointF> points)
{
    QPainterPath path(*points.begin() * grain);
    for (const QPointF& point : points) {
        path.lineTo(point * grain);
    }
    return path;
}

QRectF scaled(const QRectF& rect)
{
    return {rect.topLeft() * grain, rect.size() * grain};
}

QPainterPath disc(QPointF centre, double radius)
{
    QPainterPath path;
    path.addEllipse(centre * grain, radius * grain, radius * grain);
    return path;
}

QPainterPath box(const QRectF& rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(scaled(rect), radius * grain, radius * grain);
    return path;
}

QPainterPath ring()
{
    return drawn(disc({0.5, 0.5}, 0.42));
}

QPainterPath sliders()
{
    QPainterPath path;
    for (const auto& [y, knob] : {std::pair(0.2, 0.68), {0.5, 0.32}, {0.8, 0.6}}) {
        constexpr double radius = 0.105;
        const QPainterPath line = drawn(polyline({{0.08, y}, {0.92, y}}));
        path = path.united(line.subtracted(disc({knob, y}, radius)))
                   .united(drawn(disc({knob, y}, radius), 0.075));
    }
    return path;
}

/// Sheets above one another, of which the upper one covers the others.
QPainterPath stack()
{
    QPainterPath sheet = polyline({{0.5, 0.08}, {0.94, 0.31}, {0.5, 0.54}, {0.06, 0.31}});
    sheet.closeSubpath();
    return sheet.united(drawn(sheet, 0.06))
        .united(drawn(polyline({{0.06, 0.52}, {0.5, 0.75}, {0.94, 0.52}})))
        .united(drawn(polyline({{0.06, 0.71}, {0.5, 0.94}, {0.94, 0.71}})));
}

QPainterPath gear()
{
    constexpr int teeth = 8;
    QPainterPath wheel = disc({0.5, 0.5}, 0.35);
    for (int i = 0; i < teeth; ++i) {
        const QTransform turned = QTransform().translate(grain / 2, grain / 2).rotate(360.0 * i / teeth);
        wheel = wheel.united(turned.map(box(QRectF(-0.085, -0.47, 0.17, 0.2), 0.05)));
    }
    return wheel.subtracted(disc({0.5, 0.5}, 0.26)).united(drawn(disc({0.5, 0.5}, 0.12), 0.075));
}

QPainterPath person()
{
    QPainterPath shoulders;
    shoulders.addEllipse(QPointF(0.5, 0.86) * grain, 0.3 * grain, 0.24 * grain);
    return ring().united(disc({0.5, 0.4}, 0.145)).united(shoulders.intersected(disc({0.5, 0.5}, 0.42)));
}

QPainterPath halfCircle()
{
    QPainterPath left;
    left.addRect(scaled({0, 0, 0.5, 1}));
    return ring().united(disc({0.5, 0.5}, 0.42).intersected(left));
}

QPainterPath loudspeaker()
{
    QPainterPath path =
        polyline({{0.06, 0.38}, {0.2, 0.38}, {0.42, 0.18}, {0.42, 0.82}, {0.2, 0.62}, {0.06, 0.62}});
    path.closeSubpath();
    path = path.united(drawn(path, 0.05));
    for (const double radius : {0.2, 0.38}) {
        QPainterPath wave;
        const QRectF circle = scaled({0.56 - radius, 0.5 - radius, 2 * radius, 2 * radius});
        wave.arcMoveTo(circle, 48);
        wave.arcTo(circle, 48, -96);
        path = path.united(drawn(wave));
    }
    return path;
}

QPainterPath waveform()
{
    QPainterPath path;
    double x = 0.1;
    for (const double reach : {0.1, 0.26, 0.42, 0.2, 0.34, 0.12}) {
        path.addPath(drawn(polyline({{x, 0.5 - reach}, {x, 0.5 + reach}}), 0.095));
        x += 0.16;
    }
    return path;
}

QPainterPath playPause()
{
    QPainterPath play = polyline({{0.05, 0.2}, {0.5, 0.5}, {0.05, 0.8}});
    play.closeSubpath();
    play.addPath(box(QRectF(0.59, 0.2, 0.12, 0.6), 0.04));
    play.addPath(box(QRectF(0.82, 0.2, 0.12, 0.6), 0.04));
    return play;
}

QPainterPath chart()
{
    QPainterPath path;
    path.addPath(box(QRectF(0.1, 0.54, 0.2, 0.36), 0.05));
    path.addPath(box(QRectF(0.4, 0.32, 0.2, 0.58), 0.05));
    path.addPath(box(QRectF(0.7, 0.1, 0.2, 0.8), 0.05));
    return path;
}

QPainterPath headphones()
{
    QPainterPath band;
    const QRectF circle = scaled({0.12, 0.12, 0.76, 0.76});
    band.arcMoveTo(circle, 0);
    band.arcTo(circle, 0, 180);
    band.lineTo(QPointF(0.12, 0.62) * grain);
    band.moveTo(QPointF(0.88, 0.5) * grain);
    band.lineTo(QPointF(0.88, 0.62) * grain);
    return drawn(band)
        .united(box(QRectF(0.08, 0.55, 0.22, 0.34), 0.08))
        .united(box(QRectF(0.7, 0.55, 0.22, 0.34), 0.08));
}

QPainterPath bolt()
{
    QPainterPath path =
        polyline({{0.58, 0.06}, {0.2, 0.56}, {0.46, 0.56}, {0.4, 0.94}, {0.8, 0.42}, {0.52, 0.42}});
    path.closeSubpath();
    return path.united(drawn(path, 0.04));
}

QPainterPath tickedDisc()
{
    return disc({0.5, 0.5}, 0.46).subtracted(drawn(polyline({{0.3, 0.53}, {0.44, 0.67}, {0.71, 0.34}}), 0.1));
}

QPainterPath crossedDisc()
{
    return disc({0.5, 0.5}, 0.5)
        .subtracted(drawn(polyline({{0.33, 0.33}, {0.67, 0.67}}), 0.1))
        .subtracted(drawn(polyline({{0.67, 0.33}, {0.33, 0.67}}), 0.1));
}

QPainterPath exclamationInRing()
{
    return ring().united(drawn(polyline({{0.5, 0.27}, {0.5, 0.55}}))).united(disc({0.5, 0.71}, 0.055));
}

QPainterPath infoInRing()
{
    return ring().united(drawn(polyline({{0.5, 0.46}, {0.5, 0.72}}))).united(disc({0.5, 0.3}, 0.058));
}

QPainterPath chevrons()
{
    constexpr double boldLine = 0.11;
    return drawn(polyline({{0.24, 0.38}, {0.5, 0.12}, {0.76, 0.38}}), boldLine)
        .united(drawn(polyline({{0.24, 0.62}, {0.5, 0.88}, {0.76, 0.62}}), boldLine));
}

} // namespace

QPainterPath windowSymbol(const QString& name)
{
    static const QHash<QString, QPainterPath (*)()> symbols = {
        {QStringLiteral("slider.horizontal.3"), sliders},
        {QStringLiteral("square.stack.3d.up"), stack},
        {QStringLiteral("gearshape"), gear},
        {QStringLiteral("person.crop.circle"), person},
        {QStringLiteral("info.circle"), infoInRing},
        {QStringLiteral("circle.lefthalf.filled"), halfCircle},
        {QStringLiteral("exclamationmark.circle"), exclamationInRing},
        {QStringLiteral("checkmark.circle.fill"), tickedDisc},
        {QStringLiteral("xmark.circle.fill"), crossedDisc},
        {QStringLiteral("chevron.up.chevron.down"), chevrons},
        {QStringLiteral("speaker.wave.2"), loudspeaker},
        {QStringLiteral("waveform"), waveform},
        {QStringLiteral("playpause"), playPause},
        {QStringLiteral("chart.bar.fill"), chart},
        {QStringLiteral("headphones"), headphones},
        {QStringLiteral("bolt.fill"), bolt},
    };
    const auto draw = symbols.value(name);
    return draw != nullptr ? QTransform::fromScale(1 / grain, 1 / grain).map(draw()) : QPainterPath();
}
