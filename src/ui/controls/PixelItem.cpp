#include "ui/controls/PixelItem.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

PixelItem::PixelItem(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    followParent(parent);
}

void PixelItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void PixelItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    } else if (change == ItemParentHasChanged) {
        followParent(data.item);
    }
    QQuickItem::itemChange(change, data);
}

/// A move of the parent's, too, changes which pixels are nearest.
void PixelItem::followParent(QQuickItem* parent)
{
    disconnect(_parentX);
    disconnect(_parentY);
    if (parent != nullptr) {
        _parentX = connect(parent, &QQuickItem::xChanged, this, &QQuickItem::update);
        _parentY = connect(parent, &QQuickItem::yChanged, this, &QQuickItem::update);
    }
    update();
}

void PixelItem::draw(QImage& image, double scale)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter, image.size(), scale);
}

QSGNode* PixelItem::updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData* /*data*/)
{
    const double scale = window()->effectiveDevicePixelRatio();
    const auto snap = [scale](double points) { return static_cast<int>(std::lround(points * scale)); };
    const QRectF scene = mapRectToScene(boundingRect());
    const QPoint corner(snap(scene.left()), snap(scene.top()));
    const QSize size(snap(scene.right()) - corner.x(), snap(scene.bottom()) - corner.y());
    if (size.isEmpty()) {
        delete oldNode;
        return nullptr;
    }
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    draw(image, scale);

    auto* node = static_cast<QSGImageNode*>(oldNode);
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Nearest);
    }
    node->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureHasAlphaChannel));
    node->setRect(QRectF(QPointF(corner) / scale - scene.topLeft(), QSizeF(size) / scale));
    return node;
}
