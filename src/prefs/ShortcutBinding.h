#pragma once

#include "prefs/PellarShortcut.h"
#include "prefs/StoredForm.h"

#include <QString>

struct KeyDown;

/// The chord of a hot key.
struct ShortcutBinding {
    quint32 keyCode = 0;   ///< virtual key code
    quint32 modifiers = 0; ///< bits of HotKeyModifier

    friend bool operator==(const ShortcutBinding&, const ShortcutBinding&) = default;

    /// The chord that is recorded when a key goes down; none when no modifier is held with it.
    static std::optional<ShortcutBinding> from(const KeyDown& event);

    /// Command and Shift with Space, and with the right and the left arrow.
    static ShortcutBinding standard(PellarShortcut shortcut);

    /// The text for people: "⇧⌘ Space". A key without a name shows its number.
    QString displayString() const;
};

/// A dictionary of "keyCode" and "modifiers".
template<>
struct StoredForm<ShortcutBinding> {
    static QVariant of(const ShortcutBinding& binding);
    static std::optional<ShortcutBinding> read(const QVariant& stored);
};
