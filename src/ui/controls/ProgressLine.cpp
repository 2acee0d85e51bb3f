#include "ui/controls/ProgressLine.h"

#include <QPainter>
#include <QPainterPath>
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
    const double height = std::max(1.0, std::round(thickness() * scale));
    QRectF box(0, std::floor((size.height() - height) / 2), size.width(), height);
    const double middle = box.center().y();
    QPainterPath all;
    all.addRoundedRect(box, height / 2, height / 2);
    painter.fillPath(all, track());

    _drawnFill = filledPixels(fraction(), width() * scale, thickness() * scale);
    QPainterPath filled; // in one piece: where it is translucent an overlap would show
    filled.setFillRule(Qt::WindingFill);
    if (_drawnFill > 0) {
        box.setWidth(_drawnFill);
        filled.addRoundedRect(box, height / 2, height / 2);
    }
    if (hasKnob()) {
        const double radius = size.height() / 2.0;
        const double x = std::clamp<double>(_drawnFill, radius, std::max(radius, size.width() - radius));
        filled.addEllipse(QPointF(x, middle), radius, radius);
    }
    painter.fillPath(filled, fill());
}
