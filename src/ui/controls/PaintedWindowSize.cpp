#include "ui/controls/PaintedWindowSize.h"

#include <QtMath>

QSize paintedWindowSize(QSize content, double scale)
{
    // Paint devices tell painters their scale in this unit.
    const double painterScale = std::floor(scale * 65536) / 65536;
    const auto enough = [&](int points) {
        const auto paintedPixels = [&](int size) {
            return qRound(std::floor(qRound(size * scale) / scale) * painterScale);
        };
        int size = points;
        while (paintedPixels(size) < qRound(points * scale)) {
            ++size;
        }
        return size;
    };
    return {enough(content.width()), enough(content.height())};
}
