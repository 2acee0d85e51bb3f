#pragma once

#include "platform/KeyboardClaim.h"

#include <QRasterWindow>

class RunLoop;

/// A window of one point that cannot be seen and has the keyboard's focus. In a Wayland session what a window
/// that nobody manages grabs ends where the windows of other programs begin: it gets no keys while one of
/// those has the focus, and hears of no click on them. The focus comes to this window instead, and its loss
/// tells of the click. When the window goes, the focus returns to where it was.
class X11KeyboardClaim final : public KeyboardClaim
{
    Q_OBJECT

public:
    /// `menu` gets the keys; it outlives the claim.
    X11KeyboardClaim(QWindow& menu, RunLoop& runLoop);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void focusChanged(const QWindow* focus);

    QWindow& _menu;
    RunLoop& _runLoop;
    QRasterWindow _window;
    bool _hasFocus = false;
};
