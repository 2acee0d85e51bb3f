#include "ui/track/SoftShadow.h"

#include <QPainter>

#include <cmath>

SoftShadow::SoftShadow(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &SoftShadow::changed, this, [this] { update(); });
}

/// Boxes upon each other, each a little smaller than the last: where more of them lie it is darker.
void SoftShadow::paint(QPainter& painter, QSize size, double scale)
{
    constexpr int layers = 24;
    const double reach = extent() * scale;
    painter.setPen(Qt::NoPen);
    for (int layer = 0; layer < layers; ++layer) {
        const double share = static_cast<double>(layer + 1) / layers; // of the way to the box
        QColor ink(Qt::black);
        ink.setAlphaF(static_cast<float>(strength() * 2 * share / layers));
        painter.setBrush(ink);
        const double inset = reach * share;
        const double corner = radius() * scale + reach * (1 - share);
        painter.drawRoundedRect(QRectF(QPointF(), size).adjusted(inset, inset, -inset, -inset), corner,
                                corner);
    }
}
