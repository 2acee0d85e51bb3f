#include "ui/menu/MenuRow.h"

#include "ui/menu/MenuRowAccessible.h"

namespace {

QAccessibleInterface* accessibleRow(const QString& /*className*/, QObject* object)
{
    auto* const row = qobject_cast<MenuRow*>(object);
    return row != nullptr ? new MenuRowAccessible(*row) : nullptr;
}

} // namespace

void MenuRow::makeAccessible()
{
    QAccessible::installFactory(&accessibleRow);
}

void MenuRow::setRow(const MenuPanelRow& row)
{
    QAccessible::State changed;
    changed.checked = row.isOn() != _row.isOn();
    changed.expanded = row.isExpanded != _row.isExpanded;
    changed.collapsed = changed.expanded;
    _row = row;
    Q_EMIT rowChanged();
    if (changed.checked || changed.expanded) {
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
}
