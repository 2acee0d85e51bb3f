#pragma once

#include "ui/menu/MenuPanelRow.h"

#include <QFont>
#include <QList>
#include <QSizeF>

/// The rows of the glass panel one below the other, those of the open submenu in line below theirs.
struct MenuPanelLayout {
    QList<MenuPanelRow> rows;
    QRectF expandedFrame; ///< around the open submenu and its rows; empty when none is open
    QSizeF size;          ///< of the list with its paddings, in points

    /// The width is that of the widest row, be its submenu open or not, within limits. `font` is that of the
    /// titles; headings are bold.
    static MenuPanelLayout make(const std::vector<PellarMenuItem>& items, const QString& expandedKey,
                                const QFont& font);

    /// The row at a point of the list that answers to the pointer; null where there is none.
    const MenuPanelRow* rowAt(QPointF point) const;

    /// Null for a key that no row has.
    const MenuPanelRow* rowWithKey(const QString& key) const;

    /// The next row that can be chosen, `step` 1 downward or -1 upward, from one end on to the other; the
    /// first in that direction when `key` is of no row. Null where no row can be chosen.
    const MenuPanelRow* neighbour(const QString& key, int step) const;
};
