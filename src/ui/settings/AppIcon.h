#pragma once

#include "ui/controls/PixelItem.h"

#include <QIcon>

/// The program's icon: a pill of glass on a tile.
class AppIcon : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    using PixelItem::PixelItem;

protected:
    void paint(QPainter& painter, QSize size, double scale) override;
};

/// The same for a window.
QIcon appIcon();
