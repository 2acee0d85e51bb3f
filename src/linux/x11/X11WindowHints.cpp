#include "linux/x11/X11WindowHints.h"

#include "linux/x11/X11Reply.h"
#include "linux/x11/X11Session.h"

#include <QWindow>

bool X11WindowHints::isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qgetenv("XDG_SESSION_TYPE") == QByteArrayLiteral("wayland");
}

void X11WindowHints::setProperty(xcb_window_t window, const QString& name, xcb_atom_t type,
                                 const std::vector<uint32_t>& values)
{
    xcb_change_property(X11Session::connection(), XCB_PROP_MODE_REPLACE, window, X11Session::atom(name), type,
                        32, static_cast<uint32_t>(values.size()), values.data());
}

void X11WindowHints::allowEverySize(xcb_window_t window)
{
    constexpr uint32_t hasIncrement = 1 << 6; // of the flags, which come first
    constexpr uint32_t hasBaseSize = 1 << 8;
    constexpr uint32_t length = 18; // of WM_SIZE_HINTS, in words
    xcb_connection_t* const connection = X11Session::connection();
    const auto request =
        xcb_get_property(connection, 0, window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 0, length);
    const X11Reply<xcb_get_property_reply_t> hints(xcb_get_property_reply(connection, request, nullptr));
    if (!hints || xcb_get_property_value_length(hints.get()) != length * 4) {
        return;
    }
    auto* const words = static_cast<uint32_t*>(xcb_get_property_value(hints.get()));
    words[0] &= ~(hasIncrement | hasBaseSize);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, length, words);
}

void X11WindowHints::describe(const QWindow& window, const QString& type, bool isAbove)
{
    constexpr uint32_t everyDesktop = 0xFFFFFFFF;
    if (X11Session::connection() == nullptr) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    setProperty(id, QStringLiteral("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                {X11Session::atom(QStringLiteral("_NET_WM_WINDOW_TYPE_") + type)});
    std::vector<uint32_t> states = {X11Session::atom(QStringLiteral("_NET_WM_STATE_STICKY")),
                                    X11Session::atom(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")),
                                    X11Session::atom(QStringLiteral("_NET_WM_STATE_SKIP_PAGER"))};
    if (isAbove) {
        states.push_back(X11Session::atom(QStringLiteral("_NET_WM_STATE_ABOVE")));
    }
    setProperty(id, QStringLiteral("_NET_WM_STATE"), XCB_ATOM_ATOM, states);
    setProperty(id, QStringLiteral("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, {everyDesktop});
}
