#pragma once

#include <QColor>
#include <QList>
#include <QString>

#include <optional>

/// Where the pill takes its colour from.
enum class PellarTheme { albumArt, classic, midnight, warmth, tide, dusk };

/// Every theme, in the order in which the settings list them.
const QList<PellarTheme>& allThemes();

/// The form in which a theme is stored.
QString rawValue(PellarTheme theme);
QString displayName(PellarTheme theme);

/// The theme with this raw value; none for an unknown text.
std::optional<PellarTheme> themeWithRawValue(const QString& rawValue);

/// The colour of a theme that has one of its own, opaque.
std::optional<QColor> staticTint(PellarTheme theme);
