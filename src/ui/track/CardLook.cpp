#include "ui/track/CardLook.h"

#include "ui/controls/Contrast.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr QSize smallSize(24, 24);    // nothing of a cover can be made out at this size
constexpr QSize backdropSize(96, 96); // stretched further, no edges are seen
constexpr double vividness = 1.35;
constexpr double leastContrast = Contrast::leastOfText * 1.02; // some is lost in rounding

/// Each pixel becomes the mean of those around it in its row.
QImage blurredRows(const QImage& image, int radius)
{
    QImage blurred(image.size(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        const auto* const from = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        auto* const to = reinterpret_cast<QRgb*>(blurred.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            std::array<int, 3> sum = {};
            for (int i = x - radius; i <= x + radius; ++i) {
                const QRgb pixel = from[std::clamp(i, 0, image.width() - 1)];
                sum[0] += qRed(pixel);
                sum[1] += qGreen(pixel);
                sum[2] += qBlue(pixel);
            }
            const int count = 2 * radius + 1;
            to[x] = qRgb(sum[0] / count, sum[1] / count, sum[2] / count);
        }
    }
    return blurred;
}

/// Twice each way, which comes close to a soft lens.
QImage blurred(QImage image, int radius)
{
    const QTransform turn(0, 1, 1, 0, 0, 0); // rows become columns
    for (int way = 0; way < 2; ++way) {
        image = blurredRows(blurredRows(image, radius), radius).transformed(turn);
    }
    return image;
}

template<typename Change>
QImage changed(QImage image, const Change& change)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::transform(line, line + image.width(), line,
                       [&change](QRgb pixel) { return change(QColor(pixel)).rgb(); });
    }
    return image;
}

QColor vivid(const QColor& color)
{
    float h = 0;
    float s = 0;
    float l = 0;
    color.getHslF(&h, &s, &l);
    return QColor::fromHslF(std::max(0.0F, h), std::min(1.0F, s * static_cast<float>(vividness)), l);
}

/// The glass itself: neutral, with a breath of the tint.
QColor glass(bool isDark, const std::optional<QColor>& tint)
{
    const QColor neutral = isDark ? QColor(20, 20, 23) : QColor(248, 248, 250);
    return tint ? Contrast::mixed(neutral, *tint, isDark ? 0.16 : 0.12) : neutral;
}

bool isReadable(const QImage& ground, const QColor& text)
{
    const QColor ink = QColor(text.rgb());
    for (int y = 0; y < ground.height(); ++y) {
        for (int x = 0; x < ground.width(); ++x) {
            const QColor pixel = ground.pixelColor(x, y);
            if (Contrast::between(Contrast::mixed(pixel, ink, text.alphaF()), pixel) < leastContrast) {
                return false;
            }
        }
    }
    return true;
}

/// The text's colour with no more opacity than it takes to be read on the ground.
QColor faintestText(const QImage& ground, const QColor& text)
{
    constexpr float step = 0.02F;
    constexpr float least = 0.42F;
    QColor faintest = text;
    for (QColor fainter = text; fainter.alphaF() > least && isReadable(ground, fainter);
         fainter.setAlphaF(fainter.alphaF() - step)) {
        faintest = fainter;
    }
    return faintest;
}

/// Seen through glass that is no denser than text on it needs.
QImage seenThroughGlass(const QImage& image, bool isDark, const std::optional<QColor>& tint)
{
    constexpr double step = 0.03;
    const QColor glassColor = glass(isDark, tint);
    const QColor text = CardColors::on(glassColor, isDark, tint).dimmedText;
    double density = isDark ? 0.42 : 0.5;
    while (true) {
        QImage seen = changed(
            image, [&](const QColor& behind) { return Contrast::mixed(behind, glassColor, density); });
        if (density == 1 || isReadable(seen, text)) {
            return seen;
        }
        density = std::min(1.0, density + step);
    }
}

/// What is there without a cover: light from above.
QImage bareLight(bool isDark, const std::optional<QColor>& tint)
{
    const QColor shade = isDark ? QColor(28, 28, 31) : QColor(226, 226, 231);
    const QColor light = isDark ? QColor(74, 74, 82) : QColor(255, 255, 255);
    QImage image(smallSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        const QColor grey = Contrast::mixed(light, shade, static_cast<double>(y) / (image.height() - 1));
        const QColor color = tint ? Contrast::mixed(grey, *tint, 0.5) : grey;
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::fill(line, line + image.width(), color.rgb());
    }
    return image;
}

} // namespace

CardLook CardLook::make(const QImage& cover, bool isDark, const std::optional<QColor>& tint)
{
    QImage small = bareLight(isDark, tint);
    if (!cover.isNull()) {
        const QImage scaled = cover.scaled(smallSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        small = changed(blurred(scaled.convertToFormat(QImage::Format_RGB32), 3), &vivid);
    }
    const QImage seen = seenThroughGlass(small, isDark, tint);
    const QColor middle = seen.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0);
    CardColors colors = CardColors::on(middle, isDark, tint);
    colors.quietText = faintestText(seen, colors.dimmedText);
    const QImage stretched = seen.scaled(backdropSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return {.backdrop = blurred(stretched.convertToFormat(QImage::Format_RGB32), 3), .colors = colors};
}
