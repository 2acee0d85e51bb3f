#include "linux/x11/X11FloatingWindows.h"

#include "linux/x11/X11Reply.h"
#include "linux/x11/X11Session.h"
#include "linux/x11/X11WindowHints.h"

#include <QScreen>

#include <array>
#include <cmath>

namespace {

xcb_window_t idOf(const QWindow& window)
{
    return static_cast<xcb_window_t>(window.winId());
}

/// An X11 window moves itself with the pointer, to the pixel. The window manager of a Wayland session may not
/// have that of the windows that it manages.
bool isMovedByManager(const QWindow& window)
{
    return X11WindowHints::isWaylandSession() && !window.flags().testFlag(Qt::BypassWindowManagerHint);
}

/// Asks the window manager to add a state to a window that is shown, or to take it away.
void changeState(const QWindow& window, const QString& state, bool isOn)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = idOf(window);
    event.type = X11Session::atom(QStringLiteral("_NET_WM_STATE"));
    event.data.data32[0] = isOn ? 1 : 0;
    event.data.data32[1] = X11Session::atom(state);
    event.data.data32[3] = 1; // an application asks
    xcb_send_event(X11Session::connection(), 0, X11Session::root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(X11Session::connection());
}

/// A screen's corner is at the same numbers in points and in pixels.
double toPoints(double pixel, int corner, double scale)
{
    return corner + (pixel - corner) / scale;
}

int toPixels(double point, int corner, double scale)
{
    return static_cast<int>(std::lround(corner + (point - corner) * scale));
}

} // namespace

void X11FloatingWindows::adopt(QWindow& window, bool isOnTop)
{
    window.setFlags(Qt::Window | Qt::FramelessWindowHint);
    window.setFlag(Qt::WindowStaysOnTopHint, isOnTop);
    window.setFlag(Qt::BypassWindowManagerHint, isOnTop && X11WindowHints::isWaylandSession());
    window.setProperty("_q_showWithoutActivating", true);
    window.create();
    X11WindowHints::describe(window, QStringLiteral("UTILITY"), isOnTop);
}

void X11FloatingWindows::setOnTop(QWindow& window, bool isOnTop)
{
    const bool isShown = window.isVisible();
    if (X11Session::connection() != nullptr && isShown && !X11WindowHints::isWaylandSession()) {
        changeState(window, QStringLiteral("_NET_WM_STATE_ABOVE"), isOnTop);
        return;
    }
    // Whether a window is managed is asked when it is shown.
    const QRectF before = frame(window);
    window.hide();
    adopt(window, isOnTop);
    if (isShown) {
        window.show();
        place(window, before);
    }
}

/// As the X server knows it: Qt may still think that the window is where the window manager would have had
/// it.
QRectF X11FloatingWindows::frame(const QWindow& window) const
{
    const double scale = window.devicePixelRatio();
    xcb_connection_t* const connection = X11Session::connection();
    if (connection == nullptr) {
        return window.geometry();
    }
    const auto size = xcb_get_geometry(connection, idOf(window));
    const auto place = xcb_translate_coordinates(connection, idOf(window), X11Session::root(), 0, 0);
    const X11Reply<xcb_get_geometry_reply_t> sizeReply(xcb_get_geometry_reply(connection, size, nullptr));
    const X11Reply<xcb_translate_coordinates_reply_t> placeReply(
        xcb_translate_coordinates_reply(connection, place, nullptr));
    if (!sizeReply || !placeReply) {
        return window.geometry();
    }
    const QPoint corner = window.screen()->geometry().topLeft();
    return {toPoints(placeReply->dst_x, corner.x(), scale), toPoints(placeReply->dst_y, corner.y(), scale),
            sizeReply->width / scale, sizeReply->height / scale};
}

void X11FloatingWindows::place(QWindow& window, const QRectF& frame)
{
    const double scale = window.devicePixelRatio();
    window.setGeometry(QRect(frame.topLeft().toPoint(), frame.size().toSize()));
    if (X11Session::connection() == nullptr || scale == std::floor(scale)) {
        return;
    }
    X11WindowHints::allowEverySize(idOf(window));
    const QPoint corner = window.screen()->geometry().topLeft();
    const std::array values = {static_cast<uint32_t>(toPixels(frame.x(), corner.x(), scale)),
                               static_cast<uint32_t>(toPixels(frame.y(), corner.y(), scale)),
                               static_cast<uint32_t>(std::lround(frame.width() * scale)),
                               static_cast<uint32_t>(std::lround(frame.height() * scale))};
    xcb_configure_window(X11Session::connection(), idOf(window),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    xcb_flush(X11Session::connection());
}

bool X11FloatingWindows::startMove(QWindow& window)
{
    return isMovedByManager(window) && window.startSystemMove();
}

bool X11FloatingWindows::startResize(QWindow& window, Qt::Edges edges)
{
    return isMovedByManager(window) && window.startSystemResize(edges);
}
