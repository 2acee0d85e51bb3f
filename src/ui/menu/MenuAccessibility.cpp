#include "ui/menu/MenuAccessibility.h"

#include "ui/menu/MenuRow.h"
#include "ui/menu/MenuRowAccessible.h"

#include <QAccessibleObject>
#include <QGuiApplication>
#include <QWindow>

namespace {

/// The program as Qt shows it, and behind its windows the menus that are open.
class ApplicationAccessible final : public QAccessibleApplication
{
public:
    int childCount() const override
    {
        return QAccessibleApplication::childCount() + static_cast<int>(openMenus().size());
    }

    QAccessibleInterface* child(int index) const override
    {
        const int windows = QAccessibleApplication::childCount();
        return index < windows ? QAccessibleApplication::child(index) : openMenus().value(index - windows);
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto menu = openMenus().indexOf(const_cast<QAccessibleInterface*>(child));
        return menu < 0 ? QAccessibleApplication::indexOfChild(child)
                        : QAccessibleApplication::childCount() + static_cast<int>(menu);
    }

private:
    /// Without submenus, which are below the row that opens them.
    QList<QAccessibleInterface*> openMenus() const
    {
        QList<QAccessibleInterface*> menus;
        const auto windows = QGuiApplication::topLevelWindows();
        for (QWindow* const window : windows) {
            const bool isPopup = window->type() == Qt::Popup && window->isVisible();
            QAccessibleInterface* const root = isPopup ? window->accessibleRoot() : nullptr;
            if (root != nullptr && root->parent() == this) {
                menus.append(root);
            }
        }
        return menus;
    }
};

QAccessibleInterface* accessible(const QString& className, QObject* object)
{
    if (object == qApp && className == QLatin1String("QGuiApplication")) {
        return new ApplicationAccessible;
    }
    auto* const row = qobject_cast<MenuRow*>(object);
    return row != nullptr ? new MenuRowAccessible(*row) : nullptr;
}

} // namespace

void makeMenusAccessible()
{
    QAccessible::installFactory(&accessible);
}
