#include "app/StatusItemPlacement.h"

#include <algorithm>
#include <cmath>

QRect StatusItemPlacement::frame(const QRect& screen, QSize size, double rightInset)
{
    const double room = std::max(0, screen.width() - size.width());
    const double inset = std::isfinite(rightInset) ? std::clamp(rightInset, 0.0, room) : 0;
    const int left = screen.left() + static_cast<int>(std::lround(room - inset));
    return {QPoint(left, screen.top()), size};
}

double StatusItemPlacement::rightInset(const QRect& screen, const QRect& frame)
{
    return std::max(0, screen.right() - frame.right());
}
