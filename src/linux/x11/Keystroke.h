#pragma once

#include <QFlags>
#include <QString>

/// A modifier key of this desktop, named after what it does here. The Command key of scripts is Control.
enum class KeyModifier { shift = 1, control = 2, alt = 4 };
Q_DECLARE_FLAGS(KeyModifiers, KeyModifier)
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyModifiers)

/// A text that is typed while modifiers are held.
struct Keystroke {
    QString text;
    KeyModifiers modifiers;
};
