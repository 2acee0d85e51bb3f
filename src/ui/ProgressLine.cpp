#include "ui/ProgressLine.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace {

/// How many pixels of a line are filled. The first second of a track is seen, as a dot.
int filledPixels(double fraction, double width, double thickness)
{
    return fraction > 0 ? static_cast<int>(std::lround(std::max(thickness, fraction * width))) : 0;
}

} // namespace

ProgressLine::ProgressLine(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &ProgressLine::fractionChanged, this, &ProgressLine::followFraction);
    connect(this, &ProgressLine::thicknessChanged, this, [this] { update(); });
    connect(this, &ProgressLine::hasKnobChanged, this, [this] { update(); });
    connect(this, &ProgressLine::trackChanged, this, [this] { update(); });
    connect(this, &ProgressLine::fillChanged, this, [this] { update(); });
}

void ProgressLine::followFraction()
{
    const double scale = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
    if (filledPixels(fraction(), width() * scale, thickness() * scale) != _drawnFill) {
        update();
    }
}

void ProgressLine::paint(QPainter& painter, QSize size, double scale)
{
    const double line = std::max(1.0, std::round(thickness() * scale));
    const QRectF all(0, std::floor((size.height() - line) / 2), size.width(), line);
    _drawnFill = filledPixels(fraction(), width() * scale, thickness() * scale);
    painter.setPen(Qt::NoPen);
    painter.setBrush(track());
    painter.drawRoundedRect(all, line / 2, line / 2);
    painter.setBrush(fill());
    if (_drawnFill > 0) {
        QRectF filled = all;
        filled.setWidth(_drawnFill);
        painter.drawRoundedRect(filled, line / 2, line / 2);
    }
    if (hasKnob()) {
        const double radius = size.height() / 2.0;
        const double x = std::clamp<double>(_drawnFill, radius, std::max(radius, size.width() - radius));
        painter.drawEllipse(QPointF(x, all.center().y()), radius, radius);
    }
}
