#include "linux/x11/KeystrokeCourier.h"

#include "base/RunLoop.h"
#include "linux/x11/KeyboardLog.h"
#include "linux/x11/X11Keyboard.h"
#include "linux/x11/X11Windows.h"

namespace {

constexpr double pollInterval = 0.05; // seconds
constexpr int mostPolls = 20;
constexpr qsizetype mostErrands = 16;

/// An input method takes its time to pass a key on, to a window that must not have lost the keyboard by then.
constexpr double restBeforeReturn = 0.1; // seconds

} // namespace

KeystrokeCourier::KeystrokeCourier(RunLoop& runLoop) : _runLoop(runLoop) {}

std::optional<QString> KeystrokeCourier::send(xcb_window_t window, const Keystroke& keystroke)
{
    const xcb_window_t active = X11Windows::active();
    // On the way, the active window is about to become another one.
    if (active == window && !_isUnderWay) {
        return X11Keyboard::press(keystroke);
    }
    if (auto reason = X11Keyboard::refusal(keystroke)) {
        return reason;
    }
    if (_errands.size() >= mostErrands) {
        return QStringLiteral("Too many keystrokes wait to be typed.");
    }
    _errands.append({window, keystroke});
    if (!_isUnderWay) {
        _isUnderWay = true;
        _origin = active;
        setOut();
    }
    return std::nullopt;
}

void KeystrokeCourier::setOut()
{
    X11Windows::activate(_errands.constFirst().window);
    awaitFocus(mostPolls);
}

void KeystrokeCourier::awaitFocus(int pollsLeft)
{
    _runLoop.after(pollInterval, this, [this, pollsLeft] {
        if (X11Windows::active() == _errands.constFirst().window) {
            deliver();
        } else if (pollsLeft > 1) {
            awaitFocus(pollsLeft - 1);
        } else {
            giveUp();
        }
    });
}

void KeystrokeCourier::deliver()
{
    const QList<Errand> errands = takeErrands();
    for (const Errand& errand : errands) {
        if (const auto reason = X11Keyboard::press(errand.keystroke)) {
            qCWarning(keyboardLog).noquote() << "a keystroke was lost:" << *reason;
        }
    }
    const xcb_window_t window = errands.constFirst().window;
    _runLoop.after(restBeforeReturn, this, [this, window] { goOn(window); });
}

void KeystrokeCourier::giveUp()
{
    const QList<Errand> errands = takeErrands();
    qCWarning(keyboardLog, "%d keystroke(s) were lost: the window 0x%x did not get the keyboard",
              static_cast<int>(errands.size()), errands.constFirst().window);
    goOn(errands.constFirst().window);
}

void KeystrokeCourier::goOn(xcb_window_t from)
{
    if (_errands.isEmpty()) {
        giveFocusBack(from);
        _isUnderWay = false;
        return;
    }
    setOut();
}

void KeystrokeCourier::giveFocusBack(xcb_window_t from) const
{
    // Unless the user has turned to yet another window. The origin itself may be about to lose the keyboard
    // to a window that was given up.
    const xcb_window_t active = X11Windows::active();
    if (_origin != XCB_WINDOW_NONE && (active == from || active == _origin)) {
        X11Windows::activate(_origin);
    }
}

/// All that wait for the window of the first.
QList<KeystrokeCourier::Errand> KeystrokeCourier::takeErrands()
{
    const xcb_window_t window = _errands.constFirst().window;
    QList<Errand> taken;
    QList<Errand> left;
    for (const Errand& errand : std::as_const(_errands)) {
        (errand.window == window ? taken : left).append(errand);
    }
    _errands = left;
    return taken;
}
