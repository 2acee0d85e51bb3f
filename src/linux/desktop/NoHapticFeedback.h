#pragma once

#include "platform/HapticFeedback.h"

/// This desktop has no way to make itself felt.
class NoHapticFeedback final : public HapticFeedback
{
public:
    void perform(Pattern /*pattern*/) override {}
};
