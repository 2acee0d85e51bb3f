#pragma once

#include "ui/menu/MenuPanelRow.h"

#include <QQuickItem>

/// A row of the glass menu as an item: what it is to those who hear the menu, who get the rows in the order
/// in which they lie. How it looks is its view's.
class MenuRow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MenuPanelRow row READ row WRITE setRow NOTIFY rowChanged REQUIRED)

public:
    using QQuickItem::QQuickItem;

    const MenuPanelRow& row() const { return _row; }
    void setRow(const MenuPanelRow& row);

Q_SIGNALS:
    void rowChanged();

    /// The row is to be chosen, as a click on it would.
    void pressed();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void updatePolish() override;

private:
    MenuPanelRow _row;
};
