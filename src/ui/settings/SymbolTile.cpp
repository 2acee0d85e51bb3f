#include "ui/settings/SymbolTile.h"

#include "ui/controls/Symbol.h"

#include <QPainter>

#include <algorithm>

SymbolTile::SymbolTile(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &SymbolTile::changed, this, [this] { update(); });
}

void SymbolTile::paint(QPainter& painter, QSize size, double /*scale*/)
{
    constexpr int lighter = 114;      // percent
    constexpr double rounding = 0.27; // of the side
    constexpr double share = 0.62;    // of the symbol in the side
    const double side = std::min(size.width(), size.height());
    QLinearGradient light(0, 0, 0, side);
    light.setColorAt(0, tint().lighter(lighter));
    light.setColorAt(1, tint());
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawRoundedRect(QRectF(0, 0, side, side), side * rounding, side * rounding);
    const double inset = side * (1 - share) / 2;
    painter.translate(inset, inset);
    painter.fillPath(symbolOutline(symbol(), side * share), Qt::white);
}
