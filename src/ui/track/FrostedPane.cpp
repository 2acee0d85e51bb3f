#include "ui/track/FrostedPane.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

FrostedPane::FrostedPane(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &FrostedPane::changed, this, [this] { update(); });
}

const QImage& FrostedPane::stretched(double scale)
{
    constexpr double spare = 1.05; // for a card that overshoots as it unfolds
    const QSize size(static_cast<int>(std::ceil(fullSize().width() * scale)),
                     static_cast<int>(std::ceil(fullSize().height() * scale * spare)));
    if (_stretched.size() != size || _stretchedOf != picture().cacheKey()) {
        _stretched = picture().scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        _stretchedOf = picture().cacheKey();
    }
    return _stretched;
}

void FrostedPane::paint(QPainter& painter, QSize size, double scale)
{
    if (picture().isNull() || fullSize().isEmpty()) {
        return;
    }
    const QRectF box(QPointF(), size);
    const double corner = std::min(radius() * scale, size.height() / 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(stretched(scale)));
    painter.drawRoundedRect(box, corner, corner);
    const double line = std::max(1.0, std::floor(scale));
    painter.setPen(QPen(sheen(), line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(line / 2, line / 2, -line / 2, -line / 2), corner - line / 2,
                            corner - line / 2);
}
