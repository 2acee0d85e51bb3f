#include "linux/x11/X11HotKeys.h"

#include "linux/x11/KeyboardState.h"
#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11Keyboard.h"
#include "linux/x11/X11Reply.h"
#include "linux/x11/X11Session.h"

#include <QGuiApplication>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

/// None when the keyboard lacks one of them.
std::optional<uint16_t> maskOf(quint32 stored, const KeyboardState& keyboard)
{
    uint16_t mask = 0;
    for (const VirtualKeys::Modifier& each : VirtualKeys::modifiers(keyboard)) {
        if ((stored & each.stored) == 0) {
            continue;
        }
        if (each.mask == 0) {
            return std::nullopt;
        }
        mask |= each.mask;
    }
    return mask;
}

/// Every setting of the locks: a grab is one of exactly the modifiers that it names.
std::vector<uint16_t> settings(uint16_t locks)
{
    std::vector<uint16_t> all;
    for (unsigned setting = 0; setting <= locks; ++setting) {
        if ((setting & ~locks) == 0) {
            all.push_back(static_cast<uint16_t>(setting));
        }
    }
    return all;
}

/// An event of the keyboard extension, whose own header is not for C++.
struct KeyboardEvent {
    uint8_t type;
    uint8_t subtype;
    std::array<uint8_t, 24> rest;
    uint16_t changed; ///< of a state: its parts
};

/// Another keyboard or layout, or the next of several layouts.
bool movesKeys(const xcb_generic_event_t* event)
{
    constexpr uint8_t newKeyboard = 0;
    constexpr uint8_t newMap = 1;
    constexpr uint8_t newState = 2;
    constexpr uint16_t layoutPart = 1 << 4;
    const auto* const told = reinterpret_cast<const KeyboardEvent*>(event);
    return told->subtype == newKeyboard || told->subtype == newMap ||
           (told->subtype == newState && (told->changed & layoutPart) != 0);
}

/// The number of such events, which Qt has had the server send; -1 without the extension.
int keyboardEvent(xcb_connection_t* server)
{
    constexpr std::string_view name = "XKEYBOARD";
    const X11Reply<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(server, xcb_query_extension(server, name.size(), name.data()), nullptr));
    return reply && reply->present != 0 ? reply->first_event : -1;
}

} // namespace

X11HotKeys::X11HotKeys()
{
    if (xcb_connection_t* const server = X11Session::connection()) {
        _keyboardEvent = keyboardEvent(server);
        qGuiApp->installNativeEventFilter(this);
    }
}

X11HotKeys::~X11HotKeys()
{
    if (X11Session::connection() != nullptr) {
        qGuiApp->removeNativeEventFilter(this);
        release();
    }
}

void X11HotKeys::apply(const QList<HotKey>& hotKeys)
{
    const auto keyboard = X11Keyboard::state();
    if (!keyboard) {
        return;
    }
    release();
    _states.clear();
    _locks = XCB_MOD_MASK_LOCK | keyboard->modifierWith({XKB_KEY_Num_Lock});
    std::vector<Grab> wanted;
    for (const HotKey& each : hotKeys) {
        const auto keycode = VirtualKeys::keycode(each.keyCode, *keyboard);
        const auto mask = maskOf(each.modifiers, *keyboard);
        _states.insert(each.id, keycode && mask ? State::registered : State::missing);
        if (keycode && mask) {
            wanted.push_back({each.id, *keycode, *mask});
        }
    }
    grab(wanted);
}

void X11HotKeys::release()
{
    xcb_connection_t* const server = X11Session::connection();
    for (const Grab& each : _grabs) {
        for (const uint16_t setting : settings(_locks)) {
            xcb_ungrab_key(server, each.keycode, X11Session::root(), each.modifiers | setting);
        }
    }
    xcb_flush(server);
    _grabs.clear();
}

/// Has each of them in every setting of the locks, or not at all.
void X11HotKeys::grab(const std::vector<Grab>& wanted)
{
    xcb_connection_t* const server = X11Session::connection();
    std::vector<std::pair<quint32, xcb_void_cookie_t>> requests;
    for (const Grab& each : wanted) {
        for (const uint16_t setting : settings(_locks)) {
            requests.emplace_back(each.id, xcb_grab_key_checked(server, 0, X11Session::root(),
                                                                each.modifiers | setting, each.keycode,
                                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        }
    }
    for (const auto& [id, request] : requests) {
        if (const X11Reply<xcb_generic_error_t> error{xcb_request_check(server, request)}) {
            _states.insert(id, State::taken);
        }
    }
    for (const Grab& each : wanted) {
        if (_states.value(each.id) == State::registered) {
            _grabs.push_back(each);
            continue;
        }
        for (const uint16_t setting : settings(_locks)) {
            xcb_ungrab_key(server, each.keycode, X11Session::root(), each.modifiers | setting);
        }
    }
    xcb_flush(server);
}

std::optional<KeyDown> X11HotKeys::keyDown(const QKeyEvent& event) const
{
    return VirtualKeys::keyDown(event);
}

bool X11HotKeys::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    constexpr int sentFlag = 0x80;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const int type = event->response_type & ~sentFlag;
    if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
        return takeKey(*static_cast<const xcb_key_press_event_t*>(message), type == XCB_KEY_PRESS);
    }
    if (type == XCB_MAPPING_NOTIFY || (type == _keyboardEvent && movesKeys(event))) {
        Q_EMIT keyboardChanged();
    }
    return false;
}

/// A key that is held comes again and again, let go and pressed in the same moment.
bool X11HotKeys::takeKey(const xcb_key_press_event_t& event, bool isPress)
{
    if (event.event != X11Session::root()) {
        return false;
    }
    if (!isPress) {
        _released = {event.detail, event.time};
        return true;
    }
    const uint16_t keyModifiers = event.state & 0xFF & ~_locks;
    const auto found = std::find_if(_grabs.begin(), _grabs.end(), [&](const Grab& grab) {
        return grab.keycode == event.detail && grab.modifiers == keyModifiers;
    });
    const bool isRepeated = _released.keycode == event.detail && _released.time == event.time;
    if (found != _grabs.end() && !isRepeated) {
        Q_EMIT pressed(found->id);
    }
    return true;
}
