#pragma once

#include "linux/x11/Keystroke.h"

#include <QList>
#include <QObject>

#include <xcb/xcb.h>

#include <optional>

class RunLoop;

/// Brings keystrokes to windows. One that has the keyboard gets its keystroke at once. Another one is made
/// active for it, and then the window that was active before is made so again; all this without waiting.
class KeystrokeCourier : public QObject
{
public:
    explicit KeystrokeCourier(RunLoop& runLoop);

    /// Gives the reason, for people, when the keystroke is refused. A window that does not get the keyboard
    /// within a second gets no keystroke, which is logged.
    std::optional<QString> send(xcb_window_t window, const Keystroke& keystroke);

private:
    struct Errand {
        xcb_window_t window = XCB_WINDOW_NONE;
        Keystroke keystroke;
    };

    void setOut();
    void awaitFocus(int pollsLeft);
    void deliver();
    void giveUp();
    void goOn(xcb_window_t from);
    void giveFocusBack(xcb_window_t from) const;
    QList<Errand> takeErrands();

    RunLoop& _runLoop;
    QList<Errand> _errands; ///< those of the first one's window are next
    bool _isUnderWay = false;
    xcb_window_t _origin = XCB_WINDOW_NONE; ///< was active before the way began
};
