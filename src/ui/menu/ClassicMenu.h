#pragma once

#include "ui/menu/PellarMenuItem.h"

#include <QMenu>

/// The context menu in the desktop's own style.
class ClassicMenu : public QMenu
{
    Q_OBJECT

public:
    ClassicMenu();

    /// Replaces all rows. Of a title some 300 points are shown.
    void setItems(const std::vector<PellarMenuItem>& items, bool isDark);

    /// Replaces the rows of those submenus whose rows are others now, also while they are open.
    void refreshSubmenus(const std::vector<PellarMenuItem>& items, bool isDark);

protected:
    /// Also chooses the row whose key equivalent is pressed.
    void keyPressEvent(QKeyEvent* event) override;

private:
    ClassicMenu(const QString& title, ClassicMenu* parent);

    void add(const PellarMenuItem& item, bool isDark);

    std::vector<PellarMenuItem> _items;
};
