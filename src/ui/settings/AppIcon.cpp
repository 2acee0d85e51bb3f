#include "ui/settings/AppIcon.h"

#include "ui/controls/Symbol.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>

namespace {

void fillBox(QPainter& painter, const QRectF& box, double radius, const QBrush& brush)
{
    QPainterPath path;
    path.addRoundedRect(box, radius, radius);
    painter.fillPath(path, brush);
}

/// In a unit square.
void paintIcon(QPainter& painter)
{
    QLinearGradient tile(0, 0, 0.25, 1);
    tile.setColorAt(0, QColor(93, 168, 228));
    tile.setColorAt(0.55, QColor(96, 110, 206));
    tile.setColorAt(1, QColor(132, 82, 190));
    fillBox(painter, {0.04, 0.04, 0.92, 0.92}, 0.22, tile);

    const QRectF pill(0.14, 0.35, 0.72, 0.3);
    fillBox(painter, pill.translated(0, 0.025), 0.15, QColor(0, 0, 0, 50)); // its shadow
    QLinearGradient glass(pill.topLeft(), pill.bottomLeft());
    glass.setColorAt(0, QColor(255, 255, 255, 250));
    glass.setColorAt(1, QColor(232, 236, 246, 235));
    fillBox(painter, pill, 0.15, glass);

    const QColor ink(58, 62, 118);
    painter.save();
    painter.translate(0.23, 0.42);
    painter.fillPath(symbolOutline(QStringLiteral("play.fill"), 0.16), ink);
    painter.restore();
    double x = 0.5;
    for (const double height : {0.07, 0.16, 0.11, 0.05}) {
        fillBox(painter, {x, 0.5 - height / 2, 0.04, height}, 0.02, ink);
        x += 0.07;
    }
}

} // namespace

void AppIcon::paint(QPainter& painter, QSize size, double /*scale*/)
{
    const int side = std::min(size.width(), size.height());
    painter.scale(side, side);
    paintIcon(painter);
}

QIcon appIcon()
{
    QIcon icon;
    for (const int side : {16, 32, 48, 128}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side, side);
        paintIcon(painter);
        icon.addPixmap(picture);
    }
    return icon;
}
