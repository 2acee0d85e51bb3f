#pragma once

#include "platform/HapticFeedback.h"

/// For desktops without haptic feedback: does nothing.
class NoHapticFeedback final : public HapticFeedback
{
public:
    void perform(Pattern /*pattern*/) override {}
};
