#include "ui/controls/MarqueeText.h"

#include "ui/controls/Marquee.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace {

constexpr int scrollRate = 30;       // frames per second: a point each
constexpr double fadeWidth = 8;      // points
constexpr double longestText = 3000; // points; players say anything

/// Lets a side of what is painted vanish towards the edge; `strength` 0 leaves it.
void fade(QPainter& painter, QSize size, double width, bool atLeft, double strength)
{
    const double edge = atLeft ? 0 : size.width();
    const double inner = atLeft ? width : size.width() - width;
    QLinearGradient gradient(edge, 0, inner, 0);
    gradient.setColorAt(0, QColor::fromRgbF(0, 0, 0, static_cast<float>(1 - strength)));
    gradient.setColorAt(1, Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRectF(std::min(edge, inner), 0, width, size.height()), gradient);
}

} // namespace

MarqueeText::MarqueeText(QQuickItem* parent) : PixelItem(parent)
{
    connect(this, &MarqueeText::textChanged, this, &MarqueeText::relayout);
    connect(this, &MarqueeText::fontChanged, this, &MarqueeText::relayout);
    connect(this, &MarqueeText::isShrunkToFitChanged, this, &MarqueeText::relayout);
    connect(this, &MarqueeText::isActiveChanged, this, &MarqueeText::restart);
    connect(this, &MarqueeText::isCentredChanged, this, [this] { update(); });
    connect(this, &MarqueeText::colorChanged, this, [this] {
        _label = QImage();
        update();
    });
}

MarqueeText::~MarqueeText() = default;

void MarqueeText::setClock(FrameClock* clock)
{
    if (clock == _clock) {
        return;
    }
    if (_clock != nullptr) {
        _clock->setRate(this, 0);
    }
    _clock = clock;
    restart();
    Q_EMIT clockChanged();
}

void MarqueeText::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    PixelItem::geometryChange(newGeometry, oldGeometry);
    relayout();
}

void MarqueeText::itemChange(ItemChange change, const ItemChangeData& data)
{
    if (change == ItemVisibleHasChanged) {
        restart();
    }
    PixelItem::itemChange(change, data);
}

void MarqueeText::relayout()
{
    _lineFont = font();
    _line = QFontMetricsF(_lineFont).elidedText(text().simplified(), Qt::ElideRight, longestText);
    _textWidth = QFontMetricsF(_lineFont).horizontalAdvance(_line);
    while (isShrunkToFit() && _textWidth > width() && _lineFont.pixelSize() > smallestSize()) {
        _lineFont.setPixelSize(_lineFont.pixelSize() - 1);
        _textWidth = QFontMetricsF(_lineFont).horizontalAdvance(_line);
    }
    if (_textWidth > width()) {
        _lineFont = font();
        _textWidth = QFontMetricsF(_lineFont).horizontalAdvance(_line);
    }
    _label = QImage();
    restart();
}

void MarqueeText::restart()
{
    if (_clock != nullptr) {
        _startTime = _clock->uptime();
    }
    follow();
    update();
}

void MarqueeText::follow()
{
    if (_clock != nullptr) {
        const bool isScrolling = isActive() && isVisible() && _textWidth > width();
        _clock->setRate(this, isScrolling ? scrollRate : 0, [this] { advance(); });
    }
}

void MarqueeText::advance()
{
    if (window() != nullptr && pixelOffset(window()->effectiveDevicePixelRatio()) != _drawnOffset) {
        update();
    }
}

double MarqueeText::offset() const
{
    const bool isScrolling = _clock != nullptr && isActive() && _textWidth > width();
    return isScrolling ? Marquee::offset(_clock->uptime() - _startTime, _textWidth) : 0;
}

double MarqueeText::pixelOffset(double scale) const
{
    return std::round(offset() * scale);
}

QImage MarqueeText::drawnLabel(int height, double scale) const
{
    QImage label(std::max(1, static_cast<int>(std::ceil(_textWidth * scale))), height,
                 QImage::Format_ARGB32_Premultiplied);
    label.fill(Qt::transparent);
    QPainter painter(&label);
    painter.setPen(color());
    painter.setFont(_lineFont);
    painter.scale(scale, scale);
    const QFontMetricsF metrics(_lineFont);
    const double baseline = (height / scale - metrics.capHeight()) / 2 + metrics.capHeight();
    painter.drawText(QPointF(0, std::round(baseline * scale) / scale), _line);
    return label;
}

void MarqueeText::paint(QPainter& painter, QSize size, double scale)
{
    if (_label.isNull() || _label.height() != size.height()) {
        _label = drawnLabel(size.height(), scale);
    }
    const bool isMirrored = _line.isRightToLeft();
    const double turn = std::round((_textWidth + Marquee::gap) * scale);
    _drawnOffset = pixelOffset(scale);
    const double room = size.width() - _label.width();
    const double start = isCentred() && room > 0 ? std::floor(room / 2)
                         : isMirrored            ? room - _drawnOffset
                                                 : _drawnOffset;
    painter.drawImage(QPointF(start, 0), _label);
    if (_drawnOffset != 0) {
        painter.drawImage(QPointF(isMirrored ? start - turn : start + turn, 0), _label);
    }
    if (_textWidth > width()) {
        // Where the text begins it is whole; there it fades in as it leaves.
        const double fading = fadeWidth * scale;
        const double gone = std::min({1.0, -_drawnOffset / fading, (turn + _drawnOffset) / fading});
        fade(painter, size, fading, isMirrored, 1);
        fade(painter, size, fading, !isMirrored, std::max(0.0, gone));
    }
}
