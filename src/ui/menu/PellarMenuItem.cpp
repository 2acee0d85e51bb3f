#include "ui/menu/PellarMenuItem.h"

#include <utility>

namespace {

PellarMenuItem row(PellarMenuItem::Kind kind, const QString& title)
{
    PellarMenuItem item;
    item.kind = kind;
    item.title = title;
    return item;
}

} // namespace

PellarMenuItem PellarMenuItem::header(const QString& title)
{
    return row(Kind::header, title);
}

PellarMenuItem PellarMenuItem::info(const QString& title)
{
    return row(Kind::info, title);
}

PellarMenuItem PellarMenuItem::action(const QString& title, std::function<void()> choose)
{
    PellarMenuItem item = row(Kind::action, title);
    item.choose = std::move(choose);
    return item;
}

PellarMenuItem PellarMenuItem::toggle(const QString& title, bool isOn, std::function<void()> choose)
{
    PellarMenuItem item = row(Kind::toggle, title);
    item.isOn = isOn;
    item.choose = std::move(choose);
    return item;
}

PellarMenuItem PellarMenuItem::submenu(const QString& title, std::vector<PellarMenuItem> items)
{
    PellarMenuItem item = row(Kind::submenu, title);
    item.items = std::move(items);
    return item;
}

PellarMenuItem PellarMenuItem::separator()
{
    return {};
}

bool PellarMenuItem::isSelectable() const
{
    return kind == Kind::action || kind == Kind::toggle || kind == Kind::submenu;
}

/// A key that Qt does not know, 0, makes an empty sequence, like that of the rows that have no equivalent.
bool PellarMenuItem::isChosenBy(QKeyCombination pressed) const
{
    return isSelectable() && !keyEquivalent.isEmpty() && keyEquivalent == QKeySequence(pressed);
}

std::vector<PellarMenuItem> presentable(const std::vector<PellarMenuItem>& items)
{
    using Kind = PellarMenuItem::Kind;
    std::vector<PellarMenuItem> shown;
    bool isDivided = false;
    for (PellarMenuItem item : items) {
        item.items = presentable(item.items);
        const bool isCommand = item.kind == Kind::action || item.kind == Kind::toggle;
        if (item.kind == Kind::separator) {
            isDivided = true;
        } else if (!(isCommand && !item.choose) && !(item.kind == Kind::submenu && item.items.empty())) {
            if (isDivided && !shown.empty()) {
                shown.push_back(PellarMenuItem::separator());
            }
            isDivided = false;
            shown.push_back(std::move(item));
        }
    }
    return shown;
}
