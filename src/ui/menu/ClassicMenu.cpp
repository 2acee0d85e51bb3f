#include "ui/menu/ClassicMenu.h"

#include "ui/controls/SymbolIcon.h"
#include "ui/menu/ClassicMenuStyle.h"
#include "ui/menu/MenuAccessibility.h"
#include "ui/menu/MenuColors.h"
#include "ui/menu/MenuFont.h"

#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr int widestTitle = 300; // points

/// Not too long, and an ampersand is no mnemonic.
QString menuText(const QString& title, const QFontMetrics& metrics)
{
    return metrics.elidedText(title, Qt::ElideRight, widestTitle).replace(u'&', QStringLiteral("&&"));
}

/// The colours of a menu on a desktop that says light or dark where the palette does not follow it.
QPalette menuPalette(bool isDark)
{
    const MenuColors colors = MenuColors::forDesktop(isDark);
    const QColor background = colors.background;
    QPalette palette(background, background);
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Text, colors.text);
    palette.setColor(QPalette::Light, background); // no shine behind disabled rows
    palette.setColor(QPalette::Disabled, QPalette::Text, colors.dimmedText);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, colors.dimmedText);
    return palette;
}

} // namespace

ClassicMenu::ClassicMenu()
{
    makeMenusAccessible();
    auto* const style = new ClassicMenuStyle;
    style->setParent(this);
    setStyle(style);
    setFont(menuFont());
    setAccessibleName(QStringLiteral("Pellar"));
}

ClassicMenu::ClassicMenu(const QString& title, ClassicMenu* parent) : QMenu(title, parent)
{
    setStyle(parent->style());
    setFont(parent->font());
}

void ClassicMenu::setItems(const std::vector<PellarMenuItem>& items, bool isDark)
{
    qDeleteAll(findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    clear();
    setPalette(menuPalette(isDark));
    setToolTipsVisible(true);
    _items = items;
    for (const PellarMenuItem& item : items) {
        add(item, isDark);
    }
}

void ClassicMenu::refreshSubmenus(const std::vector<PellarMenuItem>& items, bool isDark)
{
    const auto looksAlike = [](const PellarMenuItem& a, const PellarMenuItem& b) {
        return a.kind == b.kind && a.title == b.title && a.isOn == b.isOn;
    };
    const auto submenus = findChildren<ClassicMenu*>(QString(), Qt::FindDirectChildrenOnly);
    for (const PellarMenuItem& item : items) {
        const QString title = menuText(item.title, fontMetrics());
        for (ClassicMenu* const submenu : submenus) {
            const bool isSame = std::equal(submenu->_items.begin(), submenu->_items.end(), item.items.begin(),
                                           item.items.end(), looksAlike);
            if (item.kind == PellarMenuItem::Kind::submenu && submenu->title() == title && !isSame) {
                submenu->setItems(item.items, isDark);
            }
        }
    }
}

void ClassicMenu::add(const PellarMenuItem& item, bool isDark)
{
    using Kind = PellarMenuItem::Kind;
    if (item.kind == Kind::separator) {
        addSeparator();
        return;
    }
    QFont font = this->font();
    font.setBold(item.kind == Kind::header);
    const QString title = menuText(item.title, QFontMetrics(font));
    QAction* action = nullptr;
    if (item.kind == Kind::submenu) {
        auto* const submenu = new ClassicMenu(title, this);
        submenu->setItems(item.items, isDark);
        action = addMenu(submenu);
    } else {
        action = addAction(title);
    }
    if (item.kind == Kind::header) {
        action->setFont(font);
    }
    if (QFontMetrics(font).horizontalAdvance(item.title) > widestTitle) {
        action->setToolTip(item.title.toHtmlEscaped()); // else it would be taken for markup
    }
    if (item.kind == Kind::toggle) {
        action->setCheckable(true);
        action->setChecked(item.isOn);
    }
    if (item.icon) {
        action->setIcon(symbolIcon(*item.icon, palette().color(QPalette::Text),
                                   palette().color(QPalette::HighlightedText)));
    }
    action->setShortcut(item.keyEquivalent);
    action->setShortcutVisibleInContextMenu(true);
    action->setEnabled(item.isSelectable());
    if (item.choose) {
        connect(action, &QAction::triggered, this, [choose = item.choose] { choose(); });
    }
}

void ClassicMenu::keyPressEvent(QKeyEvent* event)
{
    const auto rows = actions();
    for (size_t i = 0; i < _items.size(); ++i) {
        if (_items[i].isChosenBy(event->keyCombination())) {
            close();
            rows[static_cast<qsizetype>(i)]->trigger();
            return;
        }
    }
    QMenu::keyPressEvent(event);
}
