#pragma once

#include "prefs/Choice.h"

#include <QColor>

/// Where the pill takes its colour from.
enum class PellarTheme { albumArt, classic, midnight, warmth, tide, dusk };

template<>
struct Choices<PellarTheme> {
    static constexpr Choice<PellarTheme> all[] = {{PellarTheme::albumArt, "albumArt", "Album Art"},
                                                  {PellarTheme::classic, "classic", "Classic"},
                                                  {PellarTheme::midnight, "midnight", "Midnight"},
                                                  {PellarTheme::warmth, "warmth", "Warmth"},
                                                  {PellarTheme::tide, "tide", "Tide"},
                                                  {PellarTheme::dusk, "dusk", "Dusk"}};
};

/// The colour of a theme that has one of its own, opaque.
std::optional<QColor> staticTint(PellarTheme theme);
