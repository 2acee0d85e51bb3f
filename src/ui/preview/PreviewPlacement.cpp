#include "ui/preview/PreviewPlacement.h"

#include "ui/panel/PanelStyle.h"

#include <algorithm>

QRectF previewPlacement(const QRectF& pill, QSizeF contents, const QRectF& screen)
{
    const double centred = pill.center().x() - contents.width() / 2;
    const double rightmost = screen.right() - contents.width() - PanelStyle::screenMargin;
    const double left = std::max(std::min(centred, rightmost), screen.left() + PanelStyle::screenMargin);
    return {QPointF(left, pill.bottom() + PanelStyle::pillGap), contents};
}
