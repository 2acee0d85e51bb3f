#include "linux/x11/X11KeyboardClaim.h"

#include "base/RunLoop.h"

#include <QGuiApplication>

X11KeyboardClaim::X11KeyboardClaim(QWindow& menu, RunLoop& runLoop) : _menu(menu), _runLoop(runLoop)
{
    QSurfaceFormat format;
    format.setAlphaBufferSize(8);
    _window.setFormat(format);
    _window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    _window.setTitle(QStringLiteral("Pellar Keyboard"));
    _window.resize(1, 1);
    _window.installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &X11KeyboardClaim::focusChanged);
    _window.show();
    _window.requestActivate();
}

bool X11KeyboardClaim::eventFilter(QObject* /*watched*/, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey) {
        QCoreApplication::sendEvent(&_menu, event);
    }
    return isKey;
}

/// On its way from one of the program's windows to another the focus may be nowhere for a moment.
void X11KeyboardClaim::focusChanged(const QWindow* focus)
{
    constexpr double moment = 0.1; // seconds
    if (focus != nullptr) {
        _hasFocus = true;
    } else if (_hasFocus) {
        _runLoop.after(moment, this, [this] {
            if (QGuiApplication::focusWindow() == nullptr) {
                Q_EMIT lost();
            }
        });
    }
}
