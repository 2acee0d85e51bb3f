#pragma once

#include "platform/HotKeys.h"

#include <xcb/xcb.h>

#include <array>
#include <optional>

struct KeyboardState;

/// The keys of a keyboard by the virtual key codes under which shortcuts are stored. A code means what its
/// key types on a US keyboard, and so the key that bears that label on any other: "Z" is the key labelled Z.
/// Where no key does, as on a Cyrillic keyboard without a Latin layout beside it, it means the key at the
/// same place. Every key that types has a code, and no two have the same one. On a German keyboard the code
/// of "/" is left over, as "-" is at its place; the "ß", which is at that of "-", has it.
namespace VirtualKeys {

/// What the key types on a US keyboard; none for a code that no key has.
std::optional<xcb_keysym_t> symbol(quint32 code);

/// The key of a code on this keyboard, as it is set now; none when it has no such key.
std::optional<xcb_keycode_t> keycode(quint32 code, const KeyboardState& keyboard);

/// The code that means this key; none for one that no code does, such as a modifier.
std::optional<quint32> code(xcb_keycode_t keycode, const KeyboardState& keyboard);

struct Modifier {
    quint32 stored = 0; ///< a bit of HotKeyModifier
    uint16_t mask = 0;  ///< the X server's bit of what it is here; 0 where the keyboard has no such key
};

/// Command is the Super key, and option is Alt.
std::array<Modifier, 4> modifiers(const KeyboardState& keyboard);

/// The key of an event and what is held with it; none for a key without a code, and without an X server.
std::optional<KeyDown> keyDown(const QKeyEvent& event);

} // namespace VirtualKeys
