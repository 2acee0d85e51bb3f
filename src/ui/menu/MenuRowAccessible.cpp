#include "ui/menu/MenuRowAccessible.h"

#include "ui/menu/MenuRow.h"

#include <QQuickWindow>

MenuRowAccessible::MenuRowAccessible(MenuRow& row) : QAccessibleObject(&row) {}

MenuRow& MenuRowAccessible::row() const
{
    return *static_cast<MenuRow*>(object());
}

QWindow* MenuRowAccessible::window() const
{
    return row().window();
}

QRect MenuRowAccessible::rect() const
{
    if (window() == nullptr) {
        return {};
    }
    const QRect inWindow = row().mapRectToScene(row().boundingRect()).toRect();
    return {window()->mapToGlobal(inWindow.topLeft()), inWindow.size()};
}

/// The menu is the window's root item.
QAccessibleInterface* MenuRowAccessible::parent() const
{
    const auto* const quick = qobject_cast<QQuickWindow*>(window());
    if (quick == nullptr) {
        return nullptr;
    }
    QQuickItem* item = row().parentItem();
    while (item != nullptr && item->parentItem() != quick->contentItem()) {
        item = item->parentItem();
    }
    return QAccessible::queryAccessibleInterface(item);
}

QString MenuRowAccessible::text(QAccessible::Text text) const
{
    if (text == QAccessible::Accelerator) {
        return row().row().shortcut();
    }
    return text == QAccessible::Name ? row().row().title() : QString();
}

QAccessible::Role MenuRowAccessible::role() const
{
    const MenuPanelRow& shown = row().row();
    if (shown.isSeparator()) {
        return QAccessible::Separator;
    }
    return shown.isSelectable() ? QAccessible::MenuItem : QAccessible::StaticText;
}

QAccessible::State MenuRowAccessible::state() const
{
    const MenuPanelRow& shown = row().row();
    QAccessible::State state;
    state.disabled = !row().isEnabled();
    state.invisible = window() == nullptr || !window()->isVisible();
    state.focusable = shown.isSelectable();
    state.focused = row().hasActiveFocus();
    state.checkable = shown.isToggle();
    state.checked = shown.isOn();
    state.hasPopup = shown.isSubmenu();
    state.expandable = shown.isSubmenu();
    state.expanded = shown.isSubmenu() && shown.isExpanded;
    state.collapsed = shown.isSubmenu() && !shown.isExpanded;
    return state;
}

void* MenuRowAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList MenuRowAccessible::actionNames() const
{
    return row().row().isSelectable() ? QStringList(pressAction()) : QStringList();
}

void MenuRowAccessible::doAction(const QString& name)
{
    if (name == pressAction()) {
        Q_EMIT row().pressed();
    }
}

QStringList MenuRowAccessible::keyBindingsForAction(const QString& /*name*/) const
{
    return row().row().item.keyEquivalent.isEmpty() ? QStringList() : QStringList(row().row().shortcut());
}
