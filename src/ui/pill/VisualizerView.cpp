#include "ui/pill/VisualizerView.h"

#include "ui/controls/Pixels.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double cornerRadius = 1; // points

} // namespace

VisualizerView::VisualizerView(QQuickItem* parent) : MovingItem(parent)
{
    connect(this, &VisualizerView::colorChanged, this, [this] { update(); });
}

VisualizerView::~VisualizerView() = default;

void VisualizerView::setModel(VisualizerModel* model)
{
    if (model == _model) {
        return;
    }
    if (_model != nullptr) {
        _model->disconnect(this);
    }
    _model = model;
    if (_model != nullptr) {
        connect(_model, &VisualizerModel::changed, this, &VisualizerView::follow);
    }
    follow();
    Q_EMIT modelChanged();
}

int VisualizerView::frameRate() const
{
    return _model != nullptr ? _model->framesPerSecond() : 0;
}

void VisualizerView::advance()
{
    if (_model != nullptr) {
        _model->catchUp();
    }
    update();
}

/// A bar that stands in an image of the highest bar's size. Each height is drawn once.
const QImage& VisualizerView::bar(double height, const BarStyle& style)
{
    constexpr int steps = 8; // a pixel
    if (style != _barStyle) {
        _bars.clear();
        _barStyle = style;
    }
    const int step = static_cast<int>(std::lround(std::min<double>(height, style.size.height()) * steps));
    QImage& image = _bars[step];
    if (image.isNull()) {
        image = QImage(style.size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(style.color);
        const double top = style.size.height() - static_cast<double>(step) / steps;
        painter.drawRoundedRect(QRectF(0, top, style.size.width(), style.size.height() - top),
                                style.cornerRadius, style.cornerRadius);
    }
    return image;
}

/// The sides of the bars lie between pixels at every scale, and the gaps between them are equal.
void VisualizerView::draw(QImage& image, double scale)
{
    if (_model != nullptr && !_model->isEnabled()) {
        return;
    }
    const bool isAtRest = _model == nullptr || _model->isAtRest();
    VisualizerModel::Heights heights;
    heights.fill(VisualizerBars::minBarHeight);
    if (!isAtRest) {
        heights = _model->heights();
    }
    constexpr int count = VisualizerBars::barCount;
    const int width = std::max(1, static_cast<int>(std::lround(VisualizerBars::barWidth * scale)));
    const int room = (image.width() - width * count) / (count - 1);
    const int spacing = static_cast<int>(std::lround(VisualizerBars::barSpacing * scale));
    const int gap = std::max(1, std::min(room, spacing));
    int x = (image.width() - (width * count + gap * (count - 1))) / 2;
    const BarStyle style{.color = isAtRest ? restColor() : color(),
                         .size = QSize(width, image.height()),
                         .cornerRadius = cornerRadius * scale};
    for (const double height : heights) {
        Pixels::copy(bar(height * scale, style), image, x);
        x += width + gap;
    }
}
