#pragma once

/// What a finger on the pointing device can feel, where that can be felt at all.
class HapticFeedback
{
public:
    enum class Pattern { levelChange };

    HapticFeedback() = default;
    virtual ~HapticFeedback() = default;
    HapticFeedback(const HapticFeedback&) = delete;
    HapticFeedback& operator=(const HapticFeedback&) = delete;

    virtual void perform(Pattern pattern) = 0;
};
