#pragma once

#include <QImage>

/// What a frame needs of a painter, for images of 32 bits a pixel with premultiplied alpha. Lengths are in
/// pixels.
namespace Pixels {

/// Copies an image of the target's height into the target, from the column `x` on. What lies outside is left
/// out.
void copy(const QImage& source, QImage& target, int x);

enum class Side { left, right };

/// Lets a side vanish towards its edge, over `width` pixels; `strength` 0 leaves it, 1 takes all of the edge.
void fade(QImage& image, Side side, int width, double strength);

} // namespace Pixels
