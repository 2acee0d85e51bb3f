#pragma once

#include "platform/StatusBar.h"

/// Status items as X11 dock windows. On another window system the portable window flags have to do.
class X11StatusBar final : public StatusBar
{
public:
    int thickness() const override;
    void adopt(QWindow& window) override;
    bool isComposited() const override;
};
