#include "ui/controls/ArtworkView.h"

#include "ui/controls/Symbol.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

/// An image made to fill a size, cut around its middle.
QImage filling(const QImage& image, QSize size)
{
    const QImage scaled = image.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    const QPoint corner((scaled.width() - size.width()) / 2, (scaled.height() - size.height()) / 2);
    return scaled.copy(QRect(corner, size));
}

} // namespace

ArtworkView::ArtworkView(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &ArtworkView::imageChanged, this, [this] { update(); });
    connect(this, &ArtworkView::radiusChanged, this, [this] { update(); });
    connect(this, &ArtworkView::symbolPartChanged, this, [this] { update(); });
    connect(this, &ArtworkView::plateChanged, this, [this] { update(); });
    connect(this, &ArtworkView::symbolColorChanged, this, [this] { update(); });
}

void ArtworkView::paint(QPainter& painter, QSize size, double scale)
{
    const QRectF box(QPointF(), size);
    painter.setPen(Qt::NoPen);
    if (!image().isNull()) {
        painter.setBrush(QBrush(filling(image(), size)));
        painter.drawRoundedRect(box, radius() * scale, radius() * scale);
        return;
    }
    painter.setBrush(plate());
    painter.drawRoundedRect(box, radius() * scale, radius() * scale);
    const double side = std::min(size.width(), size.height()) * symbolPart();
    painter.translate((size.width() - side) / 2, (size.height() - side) / 2);
    painter.fillPath(symbolOutline(QStringLiteral("music.note"), side), symbolColor());
}
