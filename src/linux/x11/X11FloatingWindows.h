#pragma once

#include "platform/FloatingWindows.h"

/// Floating windows as X11 utility windows. In a Wayland session those on top are windows that nobody
/// manages: its window manager may lay out or centre the others as it likes. On another window system the
/// portable window flags have to do.
class X11FloatingWindows final : public FloatingWindows
{
public:
    void adopt(QWindow& window, bool isOnTop) override;
    void setOnTop(QWindow& window, bool isOnTop) override;
    QRectF frame(const QWindow& window) const override;
    void place(QWindow& window, const QRectF& frame) override;
    bool startMove(QWindow& window) override;
    bool startResize(QWindow& window, Qt::Edges edges) override;
};
