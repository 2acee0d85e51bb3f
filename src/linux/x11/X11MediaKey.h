#pragma once

#include <xcb/xcb.h>

#include <optional>

/// The keys of the keyboard's media row, which desktops and players grab.
namespace X11MediaKey {

enum class Symbol : xcb_keysym_t { play = 0x1008'FF14, previous = 0x1008'FF16, next = 0x1008'FF17 };

/// The key with this symbol; none on a keyboard without, or when no key events can be sent.
std::optional<xcb_keycode_t> find(Symbol symbol);

/// Whether a program gets the key wherever the keyboard's focus is. One round trip.
bool isGrabbed(xcb_keycode_t keycode);

/// Presses the key and lets it go, whatever else the user holds: a grab is one of the key without modifiers.
void tap(xcb_keycode_t keycode);

} // namespace X11MediaKey
