#include "platform/linux/x11/X11StatusBar.h"

#include "platform/linux/x11/X11Session.h"

#include <QWindow>

#include <vector>

namespace {

constexpr int pillThickness = 28;
constexpr uint32_t everyDesktop = 0xFFFFFFFF;

void setProperty(xcb_window_t window, const QString& name, xcb_atom_t type,
                 const std::vector<uint32_t>& values)
{
    xcb_change_property(X11Session::connection(), XCB_PROP_MODE_REPLACE, window, X11Session::atom(name), type,
                        32, static_cast<uint32_t>(values.size()), values.data());
}

} // namespace

int X11StatusBar::thickness() const
{
    return pillThickness;
}

void X11StatusBar::adopt(QWindow& window)
{
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                    Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint);
    window.create();
    if (X11Session::connection() == nullptr) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    setProperty(id, QStringLiteral("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                {X11Session::atom(QStringLiteral("_NET_WM_WINDOW_TYPE_DOCK"))});
    setProperty(id, QStringLiteral("_NET_WM_STATE"), XCB_ATOM_ATOM,
                {X11Session::atom(QStringLiteral("_NET_WM_STATE_ABOVE")),
                 X11Session::atom(QStringLiteral("_NET_WM_STATE_STICKY")),
                 X11Session::atom(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")),
                 X11Session::atom(QStringLiteral("_NET_WM_STATE_SKIP_PAGER"))});
    setProperty(id, QStringLiteral("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, {everyDesktop});
}

bool X11StatusBar::isComposited() const
{
    return X11Session::isComposited();
}
