#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QProperty>

/// A filled box with round corners and, if it is to have one, a border as thin as the screen can draw it.
class RoundedBox : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY borderColorChanged)

public:
    explicit RoundedBox(QQuickItem* parent = nullptr);

    double radius() const { return _radius; }
    void setRadius(double radius) { _radius = radius; }
    QColor color() const { return _color; }
    void setColor(const QColor& color) { _color = color; }
    QColor borderColor() const { return _borderColor; }
    void setBorderColor(const QColor& color) { _borderColor = color; }

Q_SIGNALS:
    void radiusChanged();
    void colorChanged();
    void borderColorChanged();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(RoundedBox, double, _radius, 0, &RoundedBox::radiusChanged)
    Q_OBJECT_BINDABLE_PROPERTY(RoundedBox, QColor, _color, &RoundedBox::colorChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(RoundedBox, QColor, _borderColor, Qt::transparent,
                                         &RoundedBox::borderColorChanged)
};
