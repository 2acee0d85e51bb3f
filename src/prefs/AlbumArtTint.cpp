#include "prefs/AlbumArtTint.h"

#include <algorithm>

std::optional<QColor> averageColor(const QImage& image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (pixels.isNull()) {
        return std::nullopt;
    }
    quint64 red = 0;
    quint64 green = 0;
    quint64 blue = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            red += static_cast<quint64>(qRed(line[x]));
            green += static_cast<quint64>(qGreen(line[x]));
            blue += static_cast<quint64>(qBlue(line[x]));
        }
    }
    const auto count = static_cast<quint64>(pixels.width()) * static_cast<quint64>(pixels.height());
    const auto mean = [count](quint64 sum) { return static_cast<int>((sum + count / 2) / count); };
    return QColor(mean(red), mean(green), mean(blue));
}

QColor boostedTint(const QColor& color)
{
    const float hue = std::max(0.0F, color.hsvHueF()); // below 0 for greys
    const float saturation = std::clamp(color.hsvSaturationF() * 1.6F, 0.45F, 1.0F);
    const float brightness = std::clamp(color.valueF() * 1.15F, 0.55F, 0.78F);
    return QColor::fromHsvF(hue, saturation, brightness).toRgb();
}
