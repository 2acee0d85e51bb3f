#pragma once

#include <QColor>
#include <QImage>

#include <optional>

/// The mean of an image's pixels, of the values as they are stored (sRGB), opaque. What is transparent counts
/// as black, as far as it is so. None for a null image.
std::optional<QColor> averageColor(const QImage& image);

/// A colour of the same hue that shows on the pill: more saturated (at least 0.45), neither dark nor glaring
/// (brightness 0.55 to 0.78). Greys become reds, whose hue is 0.
QColor boostedTint(const QColor& color);
