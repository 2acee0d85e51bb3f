#include "ui/menu/MenuRow.h"

#include <QAccessible>

#include <algorithm>

void MenuRow::setRow(const MenuPanelRow& row)
{
    const bool isSame = row.path == _row.path;
    QAccessible::State changed;
    changed.checked = isSame && row.isOn() != _row.isOn();
    changed.expanded = isSame && row.isExpanded != _row.isExpanded;
    changed.collapsed = changed.expanded;
    _row = row;
    Q_EMIT rowChanged();
    if (changed.checked || changed.expanded) {
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
}

void MenuRow::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    polish();
}

/// The list view makes rows in any order.
void MenuRow::updatePolish()
{
    QList<MenuRow*> rows;
    const auto siblings = parentItem() != nullptr ? parentItem()->childItems() : QList<QQuickItem*>();
    for (QQuickItem* const item : siblings) {
        if (auto* const sibling = qobject_cast<MenuRow*>(item)) {
            rows.append(sibling);
        }
    }
    const auto isAbove = [](const MenuRow* a, const MenuRow* b) { return a->y() < b->y(); };
    if (std::is_sorted(rows.cbegin(), rows.cend(), isAbove)) {
        return;
    }
    std::stable_sort(rows.begin(), rows.end(), isAbove);
    for (qsizetype i = 1; i < rows.size(); ++i) {
        rows[i]->stackAfter(rows[i - 1]);
    }
}
