#pragma once

#include <QRectF>
#include <QWindow>

/// Windows that the user keeps anywhere on the screen, beside those of other programs.
class FloatingWindows
{
public:
    FloatingWindows() = default;
    virtual ~FloatingWindows() = default;
    FloatingWindows(const FloatingWindows&) = delete;
    FloatingWindows& operator=(const FloatingWindows&) = delete;

    /// Makes a window that is not shown yet a floating one: without a title bar, on every desktop, in no task
    /// list. Showing it leaves the keyboard where it is.
    virtual void adopt(QWindow& window, bool isOnTop) = 0;

    /// Whether an adopted window lies above all that are not on top, too.
    virtual void setOnTop(QWindow& window, bool isOnTop) = 0;

    /// Where an adopted window that is shown is, in points: to the pixel, which may be less than a point.
    virtual QRectF frame(const QWindow& window) const = 0;
    virtual void place(QWindow& window, const QRectF& frame) = 0;

    /// Has the desktop move the window with the pointer, whose button is down, or its edges, until the button
    /// comes up. False where it does not do that.
    virtual bool startMove(QWindow& window) = 0;
    virtual bool startResize(QWindow& window, Qt::Edges edges) = 0;
};
