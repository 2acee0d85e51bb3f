#include "linux/x11/X11StatusBar.h"

#include "linux/x11/X11KeyboardClaim.h"
#include "linux/x11/X11Session.h"
#include "linux/x11/X11WindowHints.h"

#include <QGuiApplication>
#include <QWindow>

#include <array>
#include <cmath>

namespace {

constexpr int pillThickness = 28;

} // namespace

X11StatusBar::X11StatusBar(RunLoop& runLoop) : _runLoop(runLoop)
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
    // The window manager of a Wayland session keeps docks below its own panel (GNOME) or takes them for
    // windows of its tiling (sway); what it does not manage lies above all.
    window.setFlag(Qt::BypassWindowManagerHint, X11WindowHints::isWaylandSession());
    window.create();
    X11WindowHints::describe(window, QStringLiteral("DOCK"), true);
}

void X11StatusBar::place(QWindow& window, const QRect& frame)
{
    window.setGeometry(frame);
    if (X11Session::connection() == nullptr) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    X11WindowHints::allowEverySize(id);
    const auto pixels = [&window](int points) {
        return static_cast<uint32_t>(std::lround(points * window.devicePixelRatio()));
    };
    const std::array size = {pixels(frame.width()), pixels(frame.height())};
    xcb_configure_window(X11Session::connection(), id, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size.data());
    xcb_flush(X11Session::connection());
}

/// What nobody manages lies above all. The window manager looks at that, and at what a dock says of itself,
/// when a window is shown, and wipes it off when one is hidden.
void X11StatusBar::lift(QWindow& window, bool isLifted)
{
    if (X11Session::connection() != nullptr && !X11WindowHints::isWaylandSession()) {
        window.hide();
        window.setFlag(Qt::BypassWindowManagerHint, isLifted);
        X11WindowHints::describe(window, QStringLiteral("DOCK"), true);
        window.show();
    }
    window.raise();
}

bool X11StatusBar::isComposited() const
{
    return X11Session::isComposited();
}

std::unique_ptr<KeyboardClaim> X11StatusBar::claimKeyboard(QWindow& menu)
{
    return X11WindowHints::isWaylandSession() ? std::make_unique<X11KeyboardClaim>(menu, _runLoop) : nullptr;
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
