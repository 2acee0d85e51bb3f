#pragma once

#include "ui/menu/MenuPanelRow.h"

#include <QFont>
#include <QList>
#include <QSizeF>

/// The rows of the glass menu one below the other, those of the open submenu in line below theirs.
struct MenuPanelLayout {
    static constexpr double padding = 6; ///< points, around the rows

    QList<MenuPanelRow> rows;
    QRectF expandedFrame; ///< around the open submenu and its rows, from the first row's corner; or empty
    QSizeF size;          ///< with the padding, in points

    /// The width is that of the widest row, be its submenu open or not, within limits. `font` is that of the
    /// titles; headings are bold.
    static MenuPanelLayout make(const std::vector<PellarMenuItem>& items, const QString& expandedPath,
                                const QFont& font);
};

/// The next row that can be chosen from row `from` on, `step` 1 downward or -1 upward, from one end on to the
/// other; the first in that direction when `from` is -1. -1 where no row can be chosen.
int neighbour(const QList<MenuPanelRow>& rows, int from, int step);
