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

/// A text as a tool tip shows it as it is: of one without markup it is guessed what it is.
QString tipText(const QString& title)
{
    return QStringLiteral("<span>%1</span>").arg(title.toHtmlEscaped());
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

/// Where a row is among those from `start` on, or the number of all when it is not. Rows that only inform or
/// divide are told by where they are; those that can be chosen, by their titles.
size_t placeOf(const PellarMenuItem& item, const std::vector<PellarMenuItem>& items, size_t start)
{
    const auto isSame = [&item](const PellarMenuItem& other) {
        return other.kind == item.kind && (!item.isSelectable() || other.title == item.title);
    };
    if (start < items.size() && isSame(items[start])) {
        return start;
    }
    const auto from = items.begin() + static_cast<std::ptrdiff_t>(std::min(start, items.size()));
    const auto found = item.isSelectable() ? std::find_if(from, items.end(), isSame) : items.end();
    return static_cast<size_t>(found - items.begin());
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
    setToolTipsVisible(true);
    connect(this, &QMenu::triggered, this, &QMenu::close); // a screen reader's choice leaves it open
}

ClassicMenu::ClassicMenu(const QString& title, ClassicMenu* parent) : QMenu(title, parent)
{
    setStyle(parent->style());
    setFont(parent->font());
    setToolTipsVisible(true);
}

void ClassicMenu::setItems(const std::vector<PellarMenuItem>& items, bool isDark)
{
    setPalette(menuPalette(isDark));
    for (size_t i = 0; i < items.size(); ++i) {
        const size_t old = placeOf(items[i], _items, i);
        if (old == _items.size()) {
            insert(i, items[i]);
        } else {
            for (size_t gone = i; gone < old; ++gone) {
                remove(i);
            }
        }
        _items[i] = items[i];
        describe(*actions()[static_cast<qsizetype>(i)], items[i], isDark);
    }
    while (_items.size() > items.size()) {
        remove(items.size());
    }
}

void ClassicMenu::insert(size_t place, const PellarMenuItem& item)
{
    QAction* action = nullptr;
    if (item.kind == PellarMenuItem::Kind::submenu) {
        action = (new ClassicMenu(QString(), this))->menuAction();
    } else {
        action = new QAction(this);
        action->setSeparator(item.kind == PellarMenuItem::Kind::separator);
        connect(action, &QAction::triggered, this, [this, action] { choose(action); });
    }
    insertAction(actions().value(static_cast<qsizetype>(place)), action);
    _items.insert(_items.begin() + static_cast<std::ptrdiff_t>(place), item);
}

void ClassicMenu::remove(size_t place)
{
    QAction* const action = actions()[static_cast<qsizetype>(place)];
    _items.erase(_items.begin() + static_cast<std::ptrdiff_t>(place));
    removeAction(action);
    if (QMenu* const submenu = action->menu()) {
        submenu->close();
        submenu->deleteLater(); // and its action
    } else {
        action->deleteLater(); // it may be the one that has just been chosen
    }
}

void ClassicMenu::describe(QAction& action, const PellarMenuItem& item, bool isDark)
{
    using Kind = PellarMenuItem::Kind;
    if (item.kind == Kind::separator) {
        return;
    }
    if (auto* const submenu = qobject_cast<ClassicMenu*>(action.menu())) {
        submenu->setItems(item.items, isDark);
    }
    QFont titleFont = font();
    titleFont.setBold(item.kind == Kind::header);
    const QFontMetrics metrics(titleFont);
    if (item.kind == Kind::header) {
        action.setFont(titleFont);
    }
    action.setText(menuText(item.title, metrics));
    const bool isCut = metrics.horizontalAdvance(item.title) > widestTitle;
    action.setToolTip(isCut ? tipText(item.title) : QString());
    action.setCheckable(item.kind == Kind::toggle);
    action.setChecked(item.isOn);
    if (item.icon) {
        action.setIcon(symbolIcon(*item.icon, palette().color(QPalette::Text),
                                  palette().color(QPalette::HighlightedText)));
    }
    action.setShortcut(item.keyEquivalent);
    action.setShortcutVisibleInContextMenu(true);
    action.setEnabled(item.isSelectable());
}

void ClassicMenu::choose(const QAction* action)
{
    const auto row = static_cast<size_t>(actions().indexOf(action));
    const auto command = row < _items.size() ? _items[row].choose : nullptr;
    if (command) {
        command();
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
