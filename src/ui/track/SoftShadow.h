#pragma once

#include "ui/controls/PixelItem.h"

#include <QProperty>

/// The soft shadow of a box with round corners that floats above a card. The box lies `extent` points within
/// the item's edges.
class SoftShadow : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double extent READ extent WRITE setExtent NOTIFY changed)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed)
    Q_PROPERTY(double strength READ strength WRITE setStrength NOTIFY changed)

public:
    explicit SoftShadow(QQuickItem* parent = nullptr);

    /// How far it reaches, in points.
    double extent() const { return _extent; }
    void setExtent(double extent) { _extent = extent; }
    /// Of the box's corners, in points.
    double radius() const { return _radius; }
    void setRadius(double radius) { _radius = radius; }
    /// How dark it is at the box, 0 to 1.
    double strength() const { return _strength; }
    void setStrength(double strength) { _strength = strength; }

Q_SIGNALS:
    void changed();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SoftShadow, double, _extent, 0, &SoftShadow::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SoftShadow, double, _radius, 0, &SoftShadow::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SoftShadow, double, _strength, 0.3, &SoftShadow::changed)
};
