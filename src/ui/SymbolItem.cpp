#include "ui/SymbolItem.h"

#include "ui/Symbol.h"

#include <QPainter>

#include <algorithm>

SymbolItem::SymbolItem(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &SymbolItem::nameChanged, this, [this] { update(); });
    connect(this, &SymbolItem::colorChanged, this, [this] { update(); });
}

void SymbolItem::paint(QPainter* painter)
{
    const double side = std::min(width(), height());
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate((width() - side) / 2, (height() - side) / 2);
    painter->fillPath(symbolOutline(_name, side), color());
}
