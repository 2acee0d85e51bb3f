#include "ui/track/FigureText.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

FigureText::FigureText(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &FigureText::changed, this, [this] {
        setImplicitSize(std::ceil(textWidth()), std::ceil(QFontMetricsF(font()).height()));
        update();
    });
}

double FigureText::widthOf(QChar character) const
{
    const QFontMetricsF metrics(font());
    if (!character.isDigit()) {
        return metrics.horizontalAdvance(character);
    }
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    }
    return widest;
}

double FigureText::textWidth() const
{
    double width = 0;
    for (const QChar character : text()) {
        width += widthOf(character);
    }
    return width;
}

void FigureText::paint(QPainter& painter, QSize size, double scale)
{
    painter.scale(scale, scale);
    painter.setFont(font());
    painter.setPen(color());
    const QFontMetricsF metrics(font());
    const double baseline = std::round((size.height() / scale - metrics.height()) / 2 + metrics.ascent());
    double x = 0;
    const QString line = text();
    for (const QChar character : line) {
        const double cell = widthOf(character);
        painter.drawText(QPointF(x + (cell - metrics.horizontalAdvance(character)) / 2, baseline), character);
        x += cell;
    }
}
