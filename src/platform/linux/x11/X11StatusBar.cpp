#include "platform/linux/x11/X11StatusBar.h"

#include "platform/linux/x11/X11Session.h"

#include <QGuiApplication>
#include <QWindow>

#include <vector>

namespace {

constexpr int pillThickness = 28;
constexpr uint32_t everyDesktop = 0xFFFFFFFF;

void setWindowProperty(xcb_window_t window, const QString& name, xcb_atom_t type,
                       const std::vector<uint32_t>& values)
{
    xcb_change_property(X11Session::connection(), XCB_PROP_MODE_REPLACE, window, X11Session::atom(name), type,
                        32, static_cast<uint32_t>(values.size()), values.data());
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

bool X11StatusBar::isComposited() const
{
    return X11Session::isComposited();
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
