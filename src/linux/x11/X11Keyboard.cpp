#include "linux/x11/X11Keyboard.h"

#include "linux/x11/KeyboardState.h"
#include "linux/x11/X11Reply.h"
#include "linux/x11/X11Session.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <variant>

namespace {

using Reason = QString;
using Events = std::vector<KeyEvent>;

constexpr qsizetype longestText = 256;

/// None when the server is gone.
std::optional<KeyboardState> readState(xcb_connection_t* server)
{
    const xcb_setup_t* const setup = xcb_get_setup(server);
    const auto keyCount = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto symbolsCookie = xcb_get_keyboard_mapping(server, setup->min_keycode, keyCount);
    const auto modifiersCookie = xcb_get_modifier_mapping(server);
    const auto heldCookie = xcb_query_keymap(server);
    const auto maskCookie = xcb_query_pointer(server, X11Session::root());
    const X11Reply<xcb_get_keyboard_mapping_reply_t> symbols(
        xcb_get_keyboard_mapping_reply(server, symbolsCookie, nullptr));
    const X11Reply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(server, modifiersCookie, nullptr));
    const X11Reply<xcb_query_keymap_reply_t> held(xcb_query_keymap_reply(server, heldCookie, nullptr));
    const X11Reply<xcb_query_pointer_reply_t> mask(xcb_query_pointer_reply(server, maskCookie, nullptr));
    if (!symbols || !modifiers || !held || !mask) {
        return std::nullopt;
    }

    KeyboardState state;
    state.firstKeycode = setup->min_keycode;
    state.columns = symbols->keysyms_per_keycode;
    const xcb_keysym_t* const first = xcb_get_keyboard_mapping_keysyms(symbols.get());
    state.symbols.assign(first, first + xcb_get_keyboard_mapping_keysyms_length(symbols.get()));
    state.keysPerModifier = modifiers->keycodes_per_modifier;
    const xcb_keycode_t* const firstKey = xcb_get_modifier_mapping_keycodes(modifiers.get());
    state.modifierKeys.assign(firstKey, firstKey + xcb_get_modifier_mapping_keycodes_length(modifiers.get()));
    std::copy(std::begin(held->keys), std::end(held->keys), state.held.begin());
    state.mask = mask->mask;
    return state;
}

std::variant<Events, Reason> plan(const Keystroke& keystroke)
{
    if (keystroke.text.size() > longestText) {
        return QStringLiteral("The text is too long to be typed.");
    }
    if (!X11Session::hasXTest()) {
        return QStringLiteral("This desktop lets no program type.");
    }
    const auto state = X11Keyboard::state();
    if (!state) {
        return QStringLiteral("The keyboard cannot be read.");
    }
    auto events = keyEvents(keystroke, *state);
    if (!events) {
        return QStringLiteral("“%1” is not on the keyboard.").arg(keystroke.text);
    }
    return std::move(*events);
}

std::optional<Reason> reasonOf(const std::variant<Events, Reason>& plan)
{
    const auto* const reason = std::get_if<Reason>(&plan);
    return reason != nullptr ? std::optional(*reason) : std::nullopt;
}

void send(const Events& events)
{
    xcb_connection_t* const server = X11Session::connection();
    for (const KeyEvent& event : events) {
        xcb_test_fake_input(server, event.isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, event.keycode,
                            XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    }
    xcb_flush(server);
}

} // namespace

std::optional<QString> X11Keyboard::press(const Keystroke& keystroke)
{
    const auto planned = plan(keystroke);
    if (const auto* const events = std::get_if<Events>(&planned)) {
        send(*events);
    }
    return reasonOf(planned);
}

std::optional<KeyboardState> X11Keyboard::state()
{
    xcb_connection_t* const server = X11Session::connection();
    return server != nullptr ? readState(server) : std::nullopt;
}

std::optional<xcb_keycode_t> X11Keyboard::key(xcb_keysym_t symbol)
{
    const auto state = X11Session::hasXTest() ? X11Keyboard::state() : std::nullopt;
    return state ? state->key(symbol) : std::nullopt;
}

std::optional<QString> X11Keyboard::tap(xcb_keycode_t keycode)
{
    const auto state = X11Session::hasXTest() ? X11Keyboard::state() : std::nullopt;
    if (!state) {
        return QStringLiteral("The keyboard cannot be read.");
    }
    send(keyEvents(keycode, *state));
    return std::nullopt;
}

std::optional<QString> X11Keyboard::refusal(const Keystroke& keystroke)
{
    return reasonOf(plan(keystroke));
}
