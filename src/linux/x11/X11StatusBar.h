#pragma once

#include "platform/StatusBar.h"

#include <QAbstractNativeEventFilter>

class RunLoop;

/// Status items as X11 dock windows, and in a Wayland session as windows that nobody manages. On another
/// window system the portable window flags have to do.
class X11StatusBar final : public StatusBar, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit X11StatusBar(RunLoop& runLoop);
    ~X11StatusBar() override;

    int thickness() const override;
    void adopt(QWindow& window) override;
    void place(QWindow& window, const QRect& frame) override;
    void lift(QWindow& window, bool isLifted) override;
    bool isComposited() const override;
    std::unique_ptr<KeyboardClaim> claimKeyboard(QWindow& menu) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    RunLoop& _runLoop;
    int _selectionEvent = -1; ///< the number of the event that tells of compositing managers
};
