#include "ui/settings/ThemeSwatch.h"

#include <QPainter>

ThemeSwatch::ThemeSwatch(QQuickItem* parent) : PixelItem(parent)
{
    setImplicitSize(32, 32); // points
    connect(this, &ThemeSwatch::changed, this, [this] { update(); });
}

void ThemeSwatch::paint(QPainter& painter, QSize size, double scale)
{
    const QRectF disc(QPointF(), size);
    painter.setPen(Qt::NoPen);
    if (isRainbow()) {
        QConicalGradient colors(disc.center(), 90);
        for (const auto& [place, color] : {std::pair(0.0, QColor(217, 122, 77)),
                                           {0.3, QColor(157, 107, 217)},
                                           {0.6, QColor(77, 158, 217)},
                                           {0.8, QColor(86, 178, 120)},
                                           {1.0, QColor(217, 122, 77)}}) {
            colors.setColorAt(place, color);
        }
        painter.setBrush(colors);
    } else if (tint().alpha() == 0) {
        QLinearGradient halves(disc.topLeft(), disc.topRight());
        halves.setColorAt(0.5, QColor(246, 246, 248));
        halves.setColorAt(0.501, QColor(62, 62, 66));
        painter.setBrush(halves);
    } else {
        painter.setBrush(tint());
    }
    painter.drawEllipse(disc);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(128, 128, 134, 110), scale));
    painter.drawEllipse(disc.adjusted(scale / 2, scale / 2, -scale / 2, -scale / 2));
}
