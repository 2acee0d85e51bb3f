#pragma once

#include "ui/menu/MenuPanelRow.h"

#include <QQuickItem>

/// A row of the glass menu as an item: what it is to those who hear the menu. How it looks is its view's.
class MenuRow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MenuPanelRow row READ row WRITE setRow NOTIFY rowChanged REQUIRED)

public:
    using QQuickItem::QQuickItem;

    /// Lets screen readers know rows by what this class tells of them; to be called before the first is made.
    static void makeAccessible();

    const MenuPanelRow& row() const { return _row; }
    void setRow(const MenuPanelRow& row);

Q_SIGNALS:
    void rowChanged();

    /// The row is to be chosen, as a click on it would.
    void pressed();

private:
    MenuPanelRow _row;
};
