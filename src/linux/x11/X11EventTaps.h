#pragma once

#include "platform/EventTaps.h"

/// Media keys, pressed by XTEST.
class X11EventTaps final : public EventTaps
{
public:
    bool isTaken(int mediaKey) const override;

    /// What is let in at the HID tap reaches the session, too, so that the session's tap drops it. The key
    /// goes down and up at once, while the modifiers that the user may hold are lifted.
    void post(const SystemDefinedEvent& event, Tap tap) override;
};
