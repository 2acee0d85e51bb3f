#pragma once

#include "ui/menu/MenuPanelRow.h"

#include <QQuickItem>

/// A row of the glass menu as an accessible item, ordered among the others as on the screen. Its view draws
/// it.
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

    /// A screen reader asks to choose the row, as a click would.
    void pressed();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void updatePolish() override;

private:
    MenuPanelRow _row;
};
