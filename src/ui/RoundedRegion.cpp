#include "ui/RoundedRegion.h"

#include <QBitmap>
#include <QPainter>

QRegion roundedRegion(const QRect& frame, double radius)
{
    QBitmap shape(frame.size());
    shape.fill(Qt::color0);
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRectF(QPointF(), frame.size()), radius, radius);
    painter.end();
    return QRegion(shape).translated(frame.topLeft());
}
