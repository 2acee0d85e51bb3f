#include "linux/x11/X11StatusBar.h"

#include "linux/x11/X11KeyboardClaim.h"
#include "linux/x11/X11Reply.h"
#include "linux/x11/X11Session.h"

#include <QGuiApplication>
#include <QWindow>

#include <array>
#include <cmath>
#include <vector>

namespace {

constexpr int pillThickness = 28;
constexpr uint32_t everyDesktop = 0xFFFFFFFF;

/// The window manager of a Wayland session keeps docks below its own panel (GNOME) or takes them for windows
/// of its tiling (sway); what it does not manage lies above all.
bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qgetenv("XDG_SESSION_TYPE") == QByteArrayLiteral("wayland");
}

void setWindowProperty(xcb_window_t window, const QString& name, xcb_atom_t type,
                       const std::vector<uint32_t>& values)
{
    xcb_change_property(X11Session::connection(), XCB_PROP_MODE_REPLACE, window, X11Session::atom(name), type,
                        32, static_cast<uint32_t>(values.size()), values.data());
}

/// On a scaled screen Qt lets a window grow only in steps of a point, rounded to pixels, and the window
/// manager takes what is over off the pill's edge.
void allowEverySize(xcb_window_t window)
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

} // namespace

X11StatusBar::X11StatusBar()
{
    _selectionEvent = X11Session::watchCompositing();
    if (_selectionEvent >= 0) {
        qGuiApp->installNativeEventFilter(this);
    }
}

X11StatusBar::~X11StatusBar()
{
    if (_selectionEvent >= 0 && qGuiApp != nullptr) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

int X11StatusBar::thickness() const
{
    return pillThickness;
}

void X11StatusBar::adopt(QWindow& window)
{
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                    Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint);
    window.setFlag(Qt::BypassWindowManagerHint, isWaylandSession());
    window.create();
    if (X11Session::connection() == nullptr) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    setWindowProperty(id, QStringLiteral("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                      {X11Session::atom(QStringLiteral("_NET_WM_WINDOW_TYPE_DOCK"))});
    setWindowProperty(id, QStringLiteral("_NET_WM_STATE"), XCB_ATOM_ATOM,
                      {X11Session::atom(QStringLiteral("_NET_WM_STATE_ABOVE")),
                       X11Session::atom(QStringLiteral("_NET_WM_STATE_STICKY")),
                       X11Session::atom(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")),
                       X11Session::atom(QStringLiteral("_NET_WM_STATE_SKIP_PAGER"))});
    setWindowProperty(id, QStringLiteral("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, {everyDesktop});
}

void X11StatusBar::place(QWindow& window, const QRect& frame)
{
    window.setGeometry(frame);
    if (X11Session::connection() == nullptr) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    allowEverySize(id);
    const auto pixels = [&window](int points) {
        return static_cast<uint32_t>(std::lround(points * window.devicePixelRatio()));
    };
    const std::array size = {pixels(frame.width()), pixels(frame.height())};
    xcb_configure_window(X11Session::connection(), id, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size.data());
    xcb_flush(X11Session::connection());
}

bool X11StatusBar::isComposited() const
{
    return X11Session::isComposited();
}

std::unique_ptr<KeyboardClaim> X11StatusBar::claimKeyboard(QWindow& menu)
{
    return isWaylandSession() ? std::make_unique<X11KeyboardClaim>(menu) : nullptr;
}

bool X11StatusBar::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    constexpr int sentFlag = 0x80;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if (eventType == "xcb_generic_event_t" && (event->response_type & ~sentFlag) == _selectionEvent) {
        Q_EMIT compositingChanged();
    }
    return false;
}
