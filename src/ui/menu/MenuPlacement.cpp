#include "ui/menu/MenuPlacement.h"

#include "ui/panel/PanelStyle.h"

#include <algorithm>

QRectF menuPlacement(const QRectF& pill, QSizeF contents, const QRectF& screen)
{
    const double top = pill.bottom() + PanelStyle::pillGap;
    const double room = screen.bottom() - PanelStyle::screenMargin - top;
    const double left = std::max(pill.right() - contents.width(), screen.left() + PanelStyle::screenMargin);
    return {left, top, contents.width(), std::clamp(room, 0.0, contents.height())};
}
