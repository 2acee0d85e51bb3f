#include "ui/pill/VisualizerView.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double cornerRadius = 1; // points

} // namespace

VisualizerView::VisualizerView(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &VisualizerView::colorChanged, this, [this] { update(); });
}

VisualizerView::~VisualizerView() = default;

std::vector<QRectF> VisualizerView::barRects(const VisualizerModel::Heights& heights, QSize size,
                                             double scale)
{
    const auto count = static_cast<double>(heights.size());
    const double width = std::max(1.0, std::round(VisualizerBars::barWidth * scale));
    const double room = std::floor((size.width() - width * count) / (count - 1));
    const double gap = std::max(1.0, std::min(room, std::round(VisualizerBars::barSpacing * scale)));
    double x = std::floor((size.width() - (width * count + gap * (count - 1))) / 2);
    std::vector<QRectF> rects;
    for (const double points : heights) {
        const double height = points * scale;
        rects.emplace_back(x, size.height() - height, width, height);
        x += width + gap;
    }
    return rects;
}

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

void VisualizerView::setClock(FrameClock* clock)
{
    if (clock == _clock) {
        return;
    }
    if (_clock != nullptr) {
        _clock->setRate(this, 0);
    }
    _clock = clock;
    follow();
    Q_EMIT clockChanged();
}

void VisualizerView::itemChange(ItemChange change, const ItemChangeData& data)
{
    if (change == ItemVisibleHasChanged) {
        follow();
    }
    PixelItem::itemChange(change, data);
}

void VisualizerView::follow()
{
    if (_clock != nullptr) {
        const int rate = _model != nullptr && isVisible() ? _model->framesPerSecond() : 0;
        _clock->setRate(this, rate, [this] {
            _model->catchUp();
            update();
        });
    }
    update();
}

void VisualizerView::paint(QPainter& painter, QSize size, double scale)
{
    if (_model != nullptr && !_model->isEnabled()) {
        return;
    }
    VisualizerModel::Heights heights;
    heights.fill(VisualizerBars::minBarHeight);
    const bool isAtRest = _model == nullptr || _model->isAtRest();
    if (!isAtRest) {
        heights = _model->heights();
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(isAtRest ? restColor() : color());
    for (const QRectF& bar : barRects(heights, size, scale)) {
        painter.drawRoundedRect(bar, cornerRadius * scale, cornerRadius * scale);
    }
}
