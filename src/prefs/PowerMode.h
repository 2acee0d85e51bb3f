#pragma once

#include "prefs/Choice.h"

/// How the user trades smoothness for energy.
enum class PowerMode { lowPower, normal, powerUser };

template<>
struct Choices<PowerMode> {
    static constexpr Choice<PowerMode> all[] = {{PowerMode::lowPower, "lowPower", "Low Power"},
                                                {PowerMode::normal, "normal", "Normal"},
                                                {PowerMode::powerUser, "powerUser", "Power User"}};
};

/// What the mode is for, in a sentence or two.
QString summary(PowerMode mode);
