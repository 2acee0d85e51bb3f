#pragma once

#include "ui/controls/GlassColors.h"

#include <QImage>
#include <QProperty>
#include <QQuickPaintedItem>

/// A pane of glass with round corners, lit from above, and the soft shadow around it. The pane lies
/// `shadowExtent` points within the item's edges.
class GlassPane : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(GlassColors colors READ colors WRITE setColors NOTIFY changed)
    Q_PROPERTY(double shadowExtent READ shadowExtent WRITE setShadowExtent NOTIFY changed)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed)

public:
    explicit GlassPane(QQuickItem* parent = nullptr);

    GlassColors colors() const { return _colors; }
    void setColors(const GlassColors& colors) { _colors = colors; }

    /// How far the shadow reaches, in points; 0 for none.
    double shadowExtent() const { return _shadowExtent; }
    void setShadowExtent(double extent) { _shadowExtent = extent; }

    /// Of the corners, in points.
    double radius() const { return _radius; }
    void setRadius(double radius) { _radius = radius; }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    void paintShadow(QPainter& painter, const QRectF& pane, double paneRadius);
    void paintWholeShadow(QPainter& painter, const QRectF& all, const QRectF& pane, double paneRadius) const;

    QImage _shadow; ///< around a pane of the least size; null when it has not been needed
    double _shadowRadius = 0;
    double _shadowSide = 0;
    Q_OBJECT_BINDABLE_PROPERTY(GlassPane, GlassColors, _colors, &GlassPane::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(GlassPane, double, _shadowExtent, 0, &GlassPane::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(GlassPane, double, _radius, 0, &GlassPane::changed)
};
