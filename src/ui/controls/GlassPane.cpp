#include "ui/controls/GlassPane.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double shadowDrop = 0.2; // how much lower the shadow lies, as a share of the extent

QPainterPath roundedPath(const QRectF& rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

} // namespace

GlassPane::GlassPane(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    connect(this, &GlassPane::changed, this, [this] { update(); });
}

void GlassPane::paint(QPainter* painter)
{
    const QRectF pane = boundingRect().adjusted(_shadowExtent, _shadowExtent, -_shadowExtent, -_shadowExtent);
    const double paneRadius = std::clamp<double>(_radius, 0, std::max(0.0, pane.height() / 2));
    painter->setRenderHint(QPainter::Antialiasing);
    if (_shadowExtent > 0) {
        paintShadow(*painter, pane, paneRadius);
    }
    const GlassColors colors = _colors;
    QLinearGradient glass(pane.topLeft(), pane.bottomLeft());
    glass.setColorAt(0, colors.top);
    glass.setColorAt(1, colors.bottom);
    painter->fillPath(roundedPath(pane, paneRadius), glass);

    const auto outline = [&](double inset, const QColor& color) {
        painter->setPen(QPen(color, 1));
        painter->drawPath(roundedPath(pane.adjusted(inset, inset, -inset, -inset), paneRadius - inset));
    };
    painter->setBrush(Qt::NoBrush);
    outline(1.5, colors.sheen);
    outline(0.5, colors.border);
}

/// As the pane grows and shrinks its shadow stays the same but for how long its sides are: it is painted
/// once, around a small pane, and put together from the corners and the stretched sides of that.
void GlassPane::paintShadow(QPainter& painter, const QRectF& pane, double paneRadius)
{
    const double side = _shadowExtent + std::ceil(paneRadius + _shadowExtent * shadowDrop); // of a corner
    const QRectF all = boundingRect();
    if (all.width() < 2 * side + 1 || all.height() < 2 * side + 1) {
        paintWholeShadow(painter, all, pane, paneRadius);
        return;
    }
    const double scale = painter.worldTransform().m11();
    if (_shadow.isNull() || _shadow.devicePixelRatio() != scale || _shadowRadius != paneRadius ||
        _shadowSide != side) {
        const QRectF small(0, 0, 2 * side + 1, 2 * side + 1);
        _shadow = QImage((small.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        _shadow.setDevicePixelRatio(scale);
        _shadow.fill(Qt::transparent);
        QPainter shadowPainter(&_shadow);
        shadowPainter.setRenderHint(QPainter::Antialiasing);
        const double e = _shadowExtent;
        paintWholeShadow(shadowPainter, small, small.adjusted(e, e, -e, -e), paneRadius);
        _shadowRadius = paneRadius;
        _shadowSide = side;
    }
    const std::array from = {0.0, side, side + 1, 2 * side + 1};
    const std::array toX = {0.0, side, all.width() - side, all.width()};
    const std::array toY = {0.0, side, all.height() - side, all.height()};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            if (row == 1 && column == 1) {
                continue; // the pane
            }
            const QRectF source(QPointF(from[column], from[row]), QPointF(from[column + 1], from[row + 1]));
            painter.drawImage(QRectF(QPointF(toX[column], toY[row]), QPointF(toX[column + 1], toY[row + 1])),
                              _shadow, QRectF(source.topLeft() * scale, source.size() * scale));
        }
    }
}

/// Rounded rectangles upon each other, each a little larger than the last: where fewer of them lie it is
/// lighter. Nothing is drawn below the pane, which can be seen through.
void GlassPane::paintWholeShadow(QPainter& painter, const QRectF& all, const QRectF& pane,
                                 double paneRadius) const
{
    constexpr double darkness = 0.26; // at the pane's edge
    painter.save();
    QPainterPath around;
    around.addRect(all);
    painter.setClipPath(around.subtracted(roundedPath(pane, paneRadius)));
    painter.setPen(Qt::NoPen);
    const double reach = _shadowExtent * (1 - shadowDrop);
    const QRectF source = pane.translated(0, _shadowExtent * shadowDrop);
    for (int grown = 0; grown < reach; ++grown) {
        const double share = 1 - grown / reach;
        // The opacities of the layers add up to the darkness, most of it close to the pane.
        QColor ink(0, 0, 0);
        ink.setAlphaF(static_cast<float>(darkness * 3 * share * share / reach * (1 - darkness / 2)));
        painter.setBrush(ink);
        painter.drawRoundedRect(source.adjusted(-grown, -grown, grown, grown), paneRadius + grown,
                                paneRadius + grown);
    }
    painter.restore();
}
