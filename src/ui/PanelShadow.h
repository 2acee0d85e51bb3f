#pragma once

#include <QProperty>
#include <QQuickPaintedItem>

/// The soft shadow around a panel with round corners. The panel lies in the item's middle, `extent` points
/// from each of its edges, and a little higher than its shadow; nothing is drawn below the panel itself.
class PanelShadow : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double extent READ extent WRITE setExtent NOTIFY changed)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed)

public:
    explicit PanelShadow(QQuickItem* parent = nullptr);

    /// How far the shadow reaches, in points.
    double extent() const { return _extent; }
    void setExtent(double extent) { _extent = extent; }

    /// Of the panel's corners, in points.
    double radius() const { return _radius; }
    void setRadius(double radius) { _radius = radius; }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PanelShadow, double, _extent, 0, &PanelShadow::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PanelShadow, double, _radius, 0, &PanelShadow::changed)
};
