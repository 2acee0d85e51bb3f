#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QImage>
#include <QProperty>

/// A card with round corners, filled with a small soft picture stretched over it, and a line of light within
/// its edge. A card that is unfolding shows the upper part of the picture.
class FrostedPane : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QImage picture READ picture WRITE setPicture NOTIFY changed)
    Q_PROPERTY(QSizeF fullSize READ fullSize WRITE setFullSize NOTIFY changed)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed)
    Q_PROPERTY(QColor sheen READ sheen WRITE setSheen NOTIFY changed)

public:
    explicit FrostedPane(QQuickItem* parent = nullptr);

    /// Nothing is painted without one.
    QImage picture() const { return _picture; }
    void setPicture(const QImage& picture) { _picture = picture; }
    /// The size that the picture is stretched over, in points.
    QSizeF fullSize() const { return _fullSize; }
    void setFullSize(QSizeF size) { _fullSize = size; }
    double radius() const { return _radius; }
    void setRadius(double radius) { _radius = radius; }
    QColor sheen() const { return _sheen; }
    void setSheen(const QColor& color) { _sheen = color; }

Q_SIGNALS:
    void changed();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    const QImage& stretched(double scale);

    QImage _stretched; ///< the picture, so stretched
    qint64 _stretchedOf = 0;
    Q_OBJECT_BINDABLE_PROPERTY(FrostedPane, QImage, _picture, &FrostedPane::changed)
    Q_OBJECT_BINDABLE_PROPERTY(FrostedPane, QSizeF, _fullSize, &FrostedPane::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(FrostedPane, double, _radius, 0, &FrostedPane::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(FrostedPane, QColor, _sheen, Qt::transparent, &FrostedPane::changed)
};
