#pragma once

#include <QRectF>

/// What the glass panel hangs from: its top edge and its right edge stay where they are while it grows and
/// shrinks. In points, y downward.
struct MenuPanelPin {
    double topY = 0;
    double rightX = 0;

    /// Just below the pill, its right edge under the pill's.
    static MenuPanelPin below(const QRectF& pill);
};

/// The glass panel's rectangle and how opaque it is.
struct MenuPanelFrame {
    static constexpr double openingSeconds = 0.32;
    static constexpr double closingSeconds = 0.24;

    QRectF rect;
    double opacity = 1; ///< 0 to 1

    /// Open, with contents of a size. It stays on the screen: one that is too wide moves to the right, of one
    /// that is too tall the lower part has to be scrolled to.
    static MenuPanelFrame open(const MenuPanelPin& pin, QSizeF contents, const QRectF& screen);

    /// On the way from nothing to `whole`; `progress` is the share of `openingSeconds` that has passed, 0
    /// to 1.
    static MenuPanelFrame opening(const MenuPanelFrame& whole, double progress);

    /// On the way from `start` to nothing; `progress` is the share of `closingSeconds`.
    static MenuPanelFrame closing(const MenuPanelFrame& start, double progress);
};
