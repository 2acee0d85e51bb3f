#pragma once

#include "prefs/ShortcutBinding.h"

#include <QMap>
#include <QObject>
#include <QProperty>

class NotificationCenter;
class UserDefaults;

/// Which chord does what.
class KeyboardShortcutManager : public QObject
{
    Q_OBJECT

public:
    /// Of the actions that have a hot key.
    using Bindings = QMap<PellarShortcut, ShortcutBinding>;

    /// Posted after every change of a binding.
    static const QString shortcutsChanged;

    KeyboardShortcutManager(UserDefaults& defaults, NotificationCenter& notifications);
    static KeyboardShortcutManager& shared();

    std::optional<ShortcutBinding> binding(PellarShortcut shortcut) const;

    /// The first of the actions that have this chord: it alone can have the hot key.
    std::optional<PellarShortcut> owner(const ShortcutBinding& chord) const;

    /// None takes the action's hot key away.
    void setBinding(const std::optional<ShortcutBinding>& binding, PellarShortcut shortcut);
    void resetToDefaults();

private:
    void store(const std::optional<ShortcutBinding>& binding, PellarShortcut shortcut);

    UserDefaults& _defaults;
    NotificationCenter& _notifications;
    QProperty<Bindings> _bindings;
};
