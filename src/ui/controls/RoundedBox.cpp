#include "ui/controls/RoundedBox.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

RoundedBox::RoundedBox(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &RoundedBox::radiusChanged, this, [this] { update(); });
    connect(this, &RoundedBox::colorChanged, this, [this] { update(); });
    connect(this, &RoundedBox::borderColorChanged, this, [this] { update(); });
}

void RoundedBox::paint(QPainter& painter, QSize size, double scale)
{
    const QRectF box(QPointF(), size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color());
    painter.drawRoundedRect(box, radius() * scale, radius() * scale);
    if (borderColor().alpha() == 0) {
        return;
    }
    const double line = std::max(1.0, std::floor(scale));
    const double inner = std::max(0.0, radius() * scale - line / 2);
    painter.setPen(QPen(borderColor(), line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(line / 2, line / 2, -line / 2, -line / 2), inner, inner);
}
