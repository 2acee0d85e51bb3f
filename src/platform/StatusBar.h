#pragma once

#include "platform/KeyboardClaim.h"

#include <QObject>

#include <memory>

class QRect;
class QWindow;

/// The strip at the top of the screen where status items live.
class StatusBar : public QObject
{
    Q_OBJECT

public:
    /// Height of the strip, in points.
    virtual int thickness() const = 0;

    /// Makes a window that is not shown yet a status item: above the others, on every desktop, in no task
    /// list, never taking the keyboard from the window that has it. It lies on top of what is below and
    /// keeps no room free.
    virtual void adopt(QWindow& window) = 0;

    /// Puts an adopted window there, in points; to be called again once it is shown.
    virtual void place(QWindow& window, const QRect& frame) = 0;

    /// Whether translucent windows are blended with what lies below them.
    virtual bool isComposited() const = 0;

    /// Takes the keyboard for a menu that is shown and that outlives the claim. Null where the menu's own
    /// grab already brings it every key and click.
    virtual std::unique_ptr<KeyboardClaim> claimKeyboard(QWindow& menu) = 0;

Q_SIGNALS:
    void compositingChanged();
};
