#include "ui/PanelShadow.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

PanelShadow::PanelShadow(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &PanelShadow::changed, this, [this] { update(); });
}

/// Rounded rectangles upon each other, each a little larger than the last: where fewer of them lie it is
/// lighter.
void PanelShadow::paint(QPainter* painter)
{
    constexpr double drop = 0.2;      // how much lower the shadow lies, as a share of the extent
    constexpr double darkness = 0.34; // at the panel's edge
    const double extent = _extent;
    const QRectF whole = boundingRect();
    const QRectF panel = whole.adjusted(extent, extent, -extent, -extent);
    QPainterPath outside;
    outside.addRect(whole);
    QPainterPath below;
    const double panelRadius = std::min<double>({_radius, panel.height() / 2, panel.width() / 2});
    below.addRoundedRect(panel, panelRadius, panelRadius);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setClipPath(outside.subtracted(below));
    painter->setPen(Qt::NoPen);

    const double reach = extent * (1 - drop);
    const QRectF source = panel.translated(0, extent * drop);
    for (double grown = 0; grown < reach; ++grown) {
        const double share = 1 - grown / reach;
        // The opacities of the layers add up to the darkness, most of it close to the panel.
        QColor ink(0, 0, 0);
        ink.setAlphaF(static_cast<float>(darkness * 3 * share * share / reach * (1 - darkness / 2)));
        painter->setBrush(ink);
        painter->drawRoundedRect(source.adjusted(-grown, -grown, grown, grown), panelRadius + grown,
                                 panelRadius + grown);
    }
}
