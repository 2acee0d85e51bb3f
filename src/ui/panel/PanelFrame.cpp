#include "ui/panel/PanelFrame.h"

#include <algorithm>

PanelFrame PanelFrame::unfolded(double share) const
{
    PanelFrame frame = *this;
    frame.rect.setHeight(rect.height() * std::max(0.0, share));
    frame.opacity = opacity * std::clamp(share, 0.0, 1.0);
    return frame;
}
