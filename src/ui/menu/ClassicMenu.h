#pragma once

#include "ui/menu/PellarMenuItem.h"

#include <QMenu>

/// The context menu in the desktop's own style.
class ClassicMenu : public QMenu
{
    Q_OBJECT

public:
    ClassicMenu();

    /// Shows these rows, also while the menu is open. Rows that were there before keep their action, so that
    /// the pointer and a tray host, which knows them by number, still find them. Of a title some 300 points
    /// are shown.
    void setItems(const std::vector<PellarMenuItem>& items, bool isDark);

protected:
    /// Also chooses the row whose key equivalent is pressed.
    void keyPressEvent(QKeyEvent* event) override;

private:
    ClassicMenu(const QString& title, ClassicMenu* parent);

    void insert(size_t place, const PellarMenuItem& item);
    void remove(size_t place);
    void describe(QAction& action, const PellarMenuItem& item, bool isDark);
    void choose(const QAction* action);

    std::vector<PellarMenuItem> _items; ///< one for each action
};
