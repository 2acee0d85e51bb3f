#include "prefs/PellarTheme.h"

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
