#include "ui/controls/GlassPane.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

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

/// Rounded rectangles upon each other, each a little larger than the last: where fewer of them lie it is
/// lighter. Nothing is drawn below the pane, which can be seen through.
void GlassPane::paintShadow(QPainter& painter, const QRectF& pane, double paneRadius) const
{
    constexpr double drop = 0.2;      // how much lower the shadow lies, as a share of the extent
    constexpr double darkness = 0.26; // at the pane's edge
    painter.save();
    QPainterPath around;
    around.addRect(boundingRect());
    painter.setClipPath(around.subtracted(roundedPath(pane, paneRadius)));
    painter.setPen(Qt::NoPen);
    const double reach = _shadowExtent * (1 - drop);
    const QRectF source = pane.translated(0, _shadowExtent * drop);
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
