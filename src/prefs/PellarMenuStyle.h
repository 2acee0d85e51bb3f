#pragma once

#include "prefs/Choice.h"

/// How the context menu is drawn.
enum class PellarMenuStyle { liquidGlass, classic };

template<>
struct Choices<PellarMenuStyle> {
    static constexpr Choice<PellarMenuStyle> all[] = {
        {PellarMenuStyle::liquidGlass, "liquidGlass", "Liquid Glass"},
        {PellarMenuStyle::classic, "classic", "Classic"}};
};
