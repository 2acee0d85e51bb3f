#include "prefs/ThemeManager.h"

#include "platform/UserDefaults.h"

namespace {

const QString modeKey = QStringLiteral("pellar.theme.mode");

} // namespace

ThemeManager::ThemeManager(UserDefaults& defaults) : _defaults(defaults)
{
    _mode = themeWithRawValue(defaults.string(modeKey).value_or(QString())).value_or(PellarTheme::albumArt);
    _tint.setBinding([this] { return staticTint(_mode); });
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
}
