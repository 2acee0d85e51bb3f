#pragma once

#include <QQuickItem>

class QPainter;

/// An item painted pixel for pixel: its edges are moved to the nearest pixels of the screen, whatever the
/// scale of the screen is, and nothing is smoothed afterwards. It is painted only when it asks for it, and
/// when it or its parent has moved.
class PixelItem : public QQuickItem
{
    Q_OBJECT

public:
    explicit PixelItem(QQuickItem* parent = nullptr);

protected:
    /// Paints the item in a rectangle of this size, in pixels of the screen, from the origin. `scale` is the
    /// number of pixels a point has.
    virtual void paint(QPainter& /*painter*/, QSize /*size*/, double /*scale*/) {}

    /// Draws the item into a transparent image of its size in pixels; unless overridden, by paint(). What is
    /// drawn many times a second copies its pixels here itself: a painter costs more than so small a frame.
    virtual void draw(QImage& image, double scale);

    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData* data) override;

private:
    void followParent(QQuickItem* parent);

    QMetaObject::Connection _parentX;
    QMetaObject::Connection _parentY;
};
