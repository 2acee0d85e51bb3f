#include "ui/menu/MenuPanelFrame.h"

#include <QEasingCurve>

#include <algorithm>

namespace {

constexpr double pillGap = 6;
constexpr double screenMargin = 8;

double cubicTiming(QPointF first, QPointF second, double progress)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve.valueForProgress(progress);
}

MenuPanelFrame folded(const MenuPanelFrame& whole, double share)
{
    MenuPanelFrame frame = whole;
    frame.rect.setHeight(whole.rect.height() * share);
    frame.opacity = whole.opacity * share;
    return frame;
}

} // namespace

MenuPanelPin MenuPanelPin::below(const QRectF& pill)
{
    return {.topY = pill.bottom() + pillGap, .rightX = pill.right()};
}

MenuPanelFrame MenuPanelFrame::open(const MenuPanelPin& pin, QSizeF contents, const QRectF& screen)
{
    const double room = screen.bottom() - screenMargin - pin.topY;
    const double left = std::max(pin.rightX - contents.width(), screen.left() + screenMargin);
    return {.rect = QRectF(left, pin.topY, contents.width(), std::clamp(room, 0.0, contents.height())),
            .opacity = 1};
}

MenuPanelFrame MenuPanelFrame::opening(const MenuPanelFrame& whole, double progress)
{
    return folded(whole, cubicTiming({0.25, 1}, {0.5, 1}, progress));
}

MenuPanelFrame MenuPanelFrame::closing(const MenuPanelFrame& start, double progress)
{
    return folded(start, 1 - cubicTiming({0.5, 0}, {0.75, 0}, progress));
}
