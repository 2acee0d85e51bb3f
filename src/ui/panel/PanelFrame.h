#pragma once

#include <QRectF>

/// A panel's rectangle on the screen and how opaque it is.
struct PanelFrame {
    QRectF rect;
    double opacity = 1; ///< 0 to 1

    /// Unfolded by a share from its top edge, which stays where it is: 0 is nothing, 1 this frame, and more
    /// reaches beyond it.
    PanelFrame unfolded(double share) const;
};
