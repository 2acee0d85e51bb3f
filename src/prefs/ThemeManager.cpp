#include "prefs/ThemeManager.h"

#include "prefs/AlbumArtTint.h"

ThemeManager::ThemeManager(UserDefaults& defaults)
    : mode(defaults, QStringLiteral("pellar.theme.mode"), PellarTheme::albumArt)
    , _modeWatch(mode.addNotifier([this] { recomputeTint(); }))
{
    recomputeTint();
}

ThemeManager& ThemeManager::shared()
{
    static auto* const instance = new ThemeManager(UserDefaults::standard());
    return *instance;
}

void ThemeManager::updateArtwork(const QImage& artwork)
{
    _artwork = artwork;
    if (mode == PellarTheme::albumArt) {
        recomputeTint();
    }
}

void ThemeManager::recomputeTint()
{
    if (mode == PellarTheme::albumArt && !_artwork.isNull()) {
        extractTint();
    } else {
        _tint = staticTint(mode);
    }
}

/// Works in the background; the tint stays until it is done. The result is dropped when by then the mode is
/// another one or the artwork is gone; for artwork that was replaced a newer result follows.
void ThemeManager::extractTint()
{
    _extractionQueue.async([this, artwork = _artwork] {
        const auto average = averageColor(artwork);
        if (!average) {
            return;
        }
        QMetaObject::invokeMethod(this, [this, tint = boostedTint(*average)] {
            if (mode == PellarTheme::albumArt && !_artwork.isNull()) {
                _tint = tint;
            }
        });
    });
}
