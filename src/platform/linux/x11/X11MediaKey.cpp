#include "platform/linux/x11/X11MediaKey.h"

#include "platform/linux/x11/X11Keyboard.h"
#include "platform/linux/x11/X11Reply.h"
#include "platform/linux/x11/X11Session.h"

#include <QLoggingCategory>

#include <cstdlib>
#include <span>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.keyboard", QtWarningMsg)

} // namespace

std::optional<xcb_keycode_t> X11MediaKey::find(Symbol symbol)
{
    if (!X11Session::hasXTest()) {
        return std::nullopt;
    }
    xcb_connection_t* const server = X11Session::connection();
    const xcb_setup_t* const setup = xcb_get_setup(server);
    const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const X11Reply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
        server, xcb_get_keyboard_mapping(server, setup->min_keycode, count), nullptr));
    if (!reply || reply->keysyms_per_keycode == 0) {
        return std::nullopt;
    }
    const std::span symbols(xcb_get_keyboard_mapping_keysyms(reply.get()),
                            static_cast<size_t>(xcb_get_keyboard_mapping_keysyms_length(reply.get())));
    for (size_t i = 0; i < symbols.size(); i += reply->keysyms_per_keycode) {
        if (symbols[i] == static_cast<xcb_keysym_t>(symbol)) {
            return static_cast<xcb_keycode_t>(setup->min_keycode + i / reply->keysyms_per_keycode);
        }
    }
    return std::nullopt;
}

/// A key can have one grabber only: where it can be grabbed, nobody else has done so.
bool X11MediaKey::isGrabbed(xcb_keycode_t keycode)
{
    constexpr uint16_t noModifiers = 0;
    xcb_connection_t* const server = X11Session::connection();
    const auto cookie = xcb_grab_key_checked(server, 0, X11Session::root(), noModifiers, keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    if (xcb_generic_error_t* const error = xcb_request_check(server, cookie)) {
        std::free(error); // NOLINT(cppcoreguidelines-no-malloc): of xcb's making
        return true;
    }
    xcb_ungrab_key(server, keycode, X11Session::root(), noModifiers);
    return false;
}

void X11MediaKey::tap(xcb_keycode_t keycode)
{
    if (const auto reason = X11Keyboard::tap(keycode)) {
        qCWarning(log, "no media key was sent: %ls", qUtf16Printable(*reason));
    }
}
