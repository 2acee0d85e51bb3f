#include "prefs/ThemeManager.h"

#include "platform/UserDefaults.h"
#include "prefs/AlbumArtTint.h"

namespace {

const QString modeKey = QStringLiteral("pellar.theme.mode");

} // namespace

ThemeManager::ThemeManager(UserDefaults& defaults) : _defaults(defaults)
{
    _mode = themeWithRawValue(defaults.string(modeKey).value_or(QString())).value_or(PellarTheme::albumArt);
    recomputeTint();
}

ThemeManager& ThemeManager::shared()
{
    static auto* const instance = new ThemeManager(UserDefaults::standard());
    return *instance;
}

void ThemeManager::setMode(PellarTheme mode)
{
    _defaults.setObject(modeKey, rawValue(mode));
    _mode = mode;
    recomputeTint();
}

void ThemeManager::updateArtwork(const QImage& artwork)
{
    _artwork = artwork;
    if (_mode == PellarTheme::albumArt) {
        recomputeTint();
    }
}

void ThemeManager::recomputeTint()
{
    if (_mode == PellarTheme::albumArt && !_artwork.isNull()) {
        extractTint();
    } else {
        _tint = staticTint(_mode);
    }
}

/// The tint stays as it is meanwhile. A result that comes when the artwork or the mode has gone is dropped;
/// one of artwork that has been replaced is followed by that of the newer one.
void ThemeManager::extractTint()
{
    _extractionQueue.async([this, artwork = _artwork] {
        const auto average = averageColor(artwork);
        if (!average) {
            return;
        }
        QMetaObject::invokeMethod(this, [this, tint = boostedTint(*average)] {
            if (_mode == PellarTheme::albumArt && !_artwork.isNull()) {
                _tint = tint;
            }
        });
    });
}
