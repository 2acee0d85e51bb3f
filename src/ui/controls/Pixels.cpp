#include "ui/controls/Pixels.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace {

std::span<QRgb> row(QImage& image, int y)
{
    return {reinterpret_cast<QRgb*>(image.scanLine(y)), static_cast<std::size_t>(image.width())};
}

std::span<const QRgb> row(const QImage& image, int y)
{
    return {reinterpret_cast<const QRgb*>(image.constScanLine(y)), static_cast<std::size_t>(image.width())};
}

/// `part` is in 256ths.
QRgb scaled(QRgb pixel, int part)
{
    const auto channel = [part](int value) { return value * part >> 8; };
    return qRgba(channel(qRed(pixel)), channel(qGreen(pixel)), channel(qBlue(pixel)), channel(qAlpha(pixel)));
}

} // namespace

void Pixels::copy(const QImage& source, QImage& target, int x)
{
    const int from = std::max(0, -x);
    const int count = std::min(source.width(), target.width() - x) - from;
    if (count <= 0) {
        return;
    }
    for (int y = 0; y < std::min(source.height(), target.height()); ++y) {
        std::ranges::copy(row(source, y).subspan(from, count), row(target, y).subspan(x + from).begin());
    }
}

void Pixels::fade(QImage& image, Side side, int width, double strength)
{
    for (int step = 0; step < std::min(width, image.width()); ++step) {
        const int x = side == Side::left ? step : image.width() - 1 - step;
        const int part = static_cast<int>(std::lround(256 * (1 - strength * (1 - (step + 0.5) / width))));
        for (int y = 0; y < image.height(); ++y) {
            QRgb& pixel = row(image, y)[x];
            pixel = scaled(pixel, part);
        }
    }
}
