#include "ui/controls/SymbolItem.h"

#include "ui/controls/Symbol.h"

#include <QPainter>

#include <algorithm>

SymbolItem::SymbolItem(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &SymbolItem::nameChanged, this, [this] { update(); });
    connect(this, &SymbolItem::colorChanged, this, [this] { update(); });
}

void SymbolItem::paint(QPainter& painter, QSize size, double /*scale*/)
{
    const double side = std::min(size.width(), size.height());
    painter.translate((size.width() - side) / 2, (size.height() - side) / 2);
    painter.fillPath(symbolOutline(_name, side), color());
}
