#include "ui/controls/MarqueeText.h"

#include "ui/controls/Marquee.h"
#include "ui/controls/Pixels.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace {

constexpr int scrollRate = 30;       // frames per second: a point each
constexpr double fadeWidth = 8;      // points
constexpr double longestText = 3000; // points; players say anything

} // namespace

MarqueeText::MarqueeText(QQuickItem* parent) : MovingItem(parent)
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

void MarqueeText::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    MovingItem::geometryChange(newGeometry, oldGeometry);
    relayout();
}

void MarqueeText::relayout()
{
    _lineFont = font();
    _line = QFontMetricsF(_lineFont).elidedText(text().simplified(), Qt::ElideRight, longestText);
    _isMirrored = _line.isRightToLeft();
    _textWidth = QFontMetricsF(_lineFont).horizontalAdvance(_line);
    while (isShrunkToFit() && isTooLong() && _lineFont.pixelSize() > smallestSize()) {
        _lineFont.setPixelSize(_lineFont.pixelSize() - 1);
        _textWidth = QFontMetricsF(_lineFont).horizontalAdvance(_line);
    }
    if (isTooLong()) {
        _lineFont = font();
        _textWidth = QFontMetricsF(_lineFont).horizontalAdvance(_line);
    }
    _label = QImage();
    restart();
}

void MarqueeText::restart()
{
    _startTime = now();
    follow();
}

int MarqueeText::frameRate() const
{
    return isActive() && isTooLong() ? scrollRate : 0;
}

void MarqueeText::advance()
{
    if (window() != nullptr && pixelOffset(window()->effectiveDevicePixelRatio()) != _drawnOffset) {
        update();
    }
}

double MarqueeText::offset() const
{
    return frameRate() > 0 ? Marquee::offset(now() - _startTime, _textWidth) : 0;
}

int MarqueeText::pixelOffset(double scale) const
{
    return static_cast<int>(std::lround(offset() * scale));
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

void MarqueeText::draw(QImage& image, double scale)
{
    if (_label.isNull() || _label.height() != image.height()) {
        _label = drawnLabel(image.height(), scale);
    }
    const int turn = static_cast<int>(std::lround((_textWidth + Marquee::gap) * scale));
    _drawnOffset = pixelOffset(scale);
    const int room = image.width() - _label.width();
    const int start = isCentred() && room > 0 ? room / 2 : _isMirrored ? room - _drawnOffset : _drawnOffset;
    Pixels::copy(_label, image, start);
    if (_drawnOffset != 0) {
        Pixels::copy(_label, image, _isMirrored ? start - turn : start + turn);
    }
    if (isTooLong()) {
        // Where the text begins it is whole; there it fades in as it leaves.
        const double fading = fadeWidth * scale;
        const double gone = std::clamp(std::min(-_drawnOffset, turn + _drawnOffset) / fading, 0.0, 1.0);
        Pixels::fade(image, Pixels::Side::left, static_cast<int>(fading), _isMirrored ? 1 : gone);
        Pixels::fade(image, Pixels::Side::right, static_cast<int>(fading), _isMirrored ? gone : 1);
    }
}
