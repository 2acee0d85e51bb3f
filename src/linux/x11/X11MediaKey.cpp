#include "linux/x11/X11MediaKey.h"

#include "linux/x11/KeyboardLog.h"
#include "linux/x11/X11Keyboard.h"
#include "linux/x11/X11Reply.h"
#include "linux/x11/X11Session.h"

std::optional<xcb_keycode_t> X11MediaKey::find(Symbol symbol)
{
    return X11Keyboard::key(static_cast<xcb_keysym_t>(symbol));
}

/// A key can have one grabber only: where it can be grabbed, nobody else has done so.
bool X11MediaKey::isGrabbed(xcb_keycode_t keycode)
{
    constexpr uint16_t noModifiers = 0;
    xcb_connection_t* const server = X11Session::connection();
    const auto cookie = xcb_grab_key_checked(server, 0, X11Session::root(), noModifiers, keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    if (const X11Reply<xcb_generic_error_t> error(xcb_request_check(server, cookie)); error) {
        return true;
    }
    xcb_ungrab_key(server, keycode, X11Session::root(), noModifiers);
    return false;
}

void X11MediaKey::tap(xcb_keycode_t keycode)
{
    if (const auto reason = X11Keyboard::tap(keycode)) {
        qCWarning(keyboardLog, "no media key was sent: %ls", qUtf16Printable(*reason));
    }
}
