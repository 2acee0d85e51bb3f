#include "prefs/PellarTheme.h"

namespace {

struct Entry {
    PellarTheme theme;
    const char* rawValue;
    const char* displayName;
};

// In the order of the cases.
constexpr Entry entries[] = {
    {PellarTheme::albumArt, "albumArt", "Album Art"},
    {PellarTheme::classic, "classic", "Classic"},
    {PellarTheme::midnight, "midnight", "Midnight"},
    {PellarTheme::warmth, "warmth", "Warmth"},
    {PellarTheme::tide, "tide", "Tide"},
    {PellarTheme::dusk, "dusk", "Dusk"},
};

const Entry& entry(PellarTheme theme)
{
    return entries[static_cast<size_t>(theme)];
}

} // namespace

const QList<PellarTheme>& allThemes()
{
    static const QList<PellarTheme> themes = [] {
        QList<PellarTheme> result;
        for (const Entry& entry : entries) {
            result.append(entry.theme);
        }
        return result;
    }();
    return themes;
}

QString rawValue(PellarTheme theme)
{
    return QLatin1String(entry(theme).rawValue);
}

QString displayName(PellarTheme theme)
{
    return QLatin1String(entry(theme).displayName);
}

std::optional<PellarTheme> themeWithRawValue(const QString& rawValue)
{
    for (const Entry& entry : entries) {
        if (rawValue == QLatin1String(entry.rawValue)) {
            return entry.theme;
        }
    }
    return std::nullopt;
}

std::optional<QColor> staticTint(PellarTheme theme)
{
    switch (theme) {
    case PellarTheme::midnight:
        return QColor::fromRgbF(0.0F, 0.0F, 0.0F);
    case PellarTheme::warmth:
        return QColor::fromRgbF(0.85F, 0.48F, 0.30F);
    case PellarTheme::tide:
        return QColor::fromRgbF(0.30F, 0.62F, 0.85F);
    case PellarTheme::dusk:
        return QColor::fromRgbF(0.62F, 0.42F, 0.85F);
    case PellarTheme::albumArt:
    case PellarTheme::classic:
        break;
    }
    return std::nullopt;
}
