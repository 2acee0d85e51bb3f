#pragma once

#include <QKeySequence>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

/// One row of the context menu, in whichever style it is drawn.
struct PellarMenuItem {
    /// A bold heading, a line that only informs, a command, a command with a check mark, a row that opens a
    /// list of its own, a divider.
    enum class Kind { header, info, action, toggle, submenu, separator };

    Kind kind = Kind::separator;
    QString title;               ///< one line; empty for a separator
    std::optional<QString> icon; ///< name of a symbol
    bool isOn = false;           ///< whether a toggle has its check mark
    QKeySequence keyEquivalent;  ///< chooses the row while the menu is open; empty for none
    std::vector<PellarMenuItem> items;
    std::function<void()> choose; ///< what an action or a toggle does

    static PellarMenuItem header(const QString& title);
    static PellarMenuItem info(const QString& title);
    static PellarMenuItem action(const QString& title, std::function<void()> choose);
    static PellarMenuItem toggle(const QString& title, bool isOn, std::function<void()> choose);
    static PellarMenuItem submenu(const QString& title, std::vector<PellarMenuItem> items);
    static PellarMenuItem separator();

    /// Whether the row answers to the pointer and the keyboard.
    bool isSelectable() const;

    /// Whether pressing these keys chooses the row.
    bool isChosenBy(QKeyCombination pressed) const;
};

/// The rows as they can be shown: without commands that do nothing and submenus that hold nothing, and with
/// separators only between rows. Submenus likewise.
std::vector<PellarMenuItem> presentable(const std::vector<PellarMenuItem>& items);
