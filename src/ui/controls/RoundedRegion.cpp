#include "ui/controls/RoundedRegion.h"

#include <QBitmap>
#include <QPainter>

QRegion roundedRegion(QSize size, double radius)
{
    QBitmap shape(size);
    shape.fill(Qt::color0);
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRectF(QPointF(), size), radius, radius);
    painter.end();
    return QRegion(shape);
}
