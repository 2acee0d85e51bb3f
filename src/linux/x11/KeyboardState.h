#pragma once

#include "linux/x11/Keystroke.h"

#include <xcb/xcb.h>

#include <array>
#include <initializer_list>
#include <optional>
#include <span>
#include <vector>

/// What the keys of the keyboard mean, and which are held, at one moment.
struct KeyboardState {
    /// A key's symbols, `columns` a key: the first layout's plain and shifted one, then those of the second.
    std::vector<xcb_keysym_t> symbols;
    size_t columns = 0;
    xcb_keycode_t firstKeycode = 8;

    std::vector<xcb_keycode_t> modifierKeys; ///< `keysPerModifier` for each of the eight modifiers; 0: none
    size_t keysPerModifier = 0;

    std::array<uint8_t, 32> held = {}; ///< a bit a keycode
    uint16_t mask = 0;                 ///< active modifiers, and the layout's number in bits 13 and 14

    /// The first key with this symbol, in whatever layout and level.
    std::optional<xcb_keycode_t> key(xcb_keysym_t symbol) const;

    /// The key that a shortcut with this symbol means: the one that types it, plain or else with Shift, on
    /// the present layout, or else on another one.
    std::optional<xcb_keycode_t> shortcutKey(xcb_keysym_t symbol) const;

    /// The same, but only a key that types it plain.
    std::optional<xcb_keycode_t> plainKey(xcb_keysym_t symbol) const;

    /// All that a key can type; empty for a keycode that is none.
    std::span<const xcb_keysym_t> symbolsOf(xcb_keycode_t keycode) const;

    /// Whether a key types nothing at all: the keyboard has no such key.
    bool isBlank(xcb_keycode_t keycode) const;

    /// The bit of the modifier that a key with one of these symbols is; 0 when there is none.
    uint16_t modifierWith(std::initializer_list<xcb_keysym_t> keySymbols) const;

    bool isHeld(xcb_keycode_t keycode) const { return (held.at(keycode / 8U) >> (keycode % 8U) & 1U) != 0; }
};

struct KeyEvent {
    xcb_keycode_t keycode = 0;
    bool isPress = false;

    friend bool operator==(const KeyEvent&, const KeyEvent&) = default;
};

/// The key events that type a keystroke whatever is held or locked, and that leave the modifiers as they
/// were. None when a character is on no key of the present layout, plain or with Shift; with Control or Alt,
/// which programs match on the Latin layout, the other layouts count, too.
std::optional<std::vector<KeyEvent>> keyEvents(const Keystroke& keystroke, const KeyboardState& state);

/// The key events that press one key and let it go, in the same way.
std::vector<KeyEvent> keyEvents(xcb_keycode_t keycode, const KeyboardState& state);
