#pragma once

#include "linux/x11/KeyboardState.h"

#include <optional>

/// Types on behalf of the user, by key events that programs cannot tell from real ones.
namespace X11Keyboard {

/// Sends a keystroke to the window that has the focus: all of it or nothing. Modifiers and locks that the
/// user holds do not count and are as before afterwards; other held keys are let go. The text may have up to
/// 256 characters. Gives the reason, for people, when nothing was sent: no such keyboard, or a character that
/// is not on it.
std::optional<QString> press(const Keystroke& keystroke);

/// What the keyboard is now; none without an X server.
std::optional<KeyboardState> state();

/// The key with this symbol; none on a keyboard without, or when no key events can be sent.
std::optional<xcb_keycode_t> key(xcb_keysym_t symbol);

/// Presses one key and lets it go, as if nothing else was held.
std::optional<QString> tap(xcb_keycode_t keycode);

/// Why the keystroke could not be sent as things are; none when it could.
std::optional<QString> refusal(const Keystroke& keystroke);

} // namespace X11Keyboard
