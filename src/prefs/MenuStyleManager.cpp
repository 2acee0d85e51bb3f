#include "prefs/MenuStyleManager.h"

MenuStyleManager::MenuStyleManager(UserDefaults& defaults)
    : style(defaults, QStringLiteral("pellar.menu.style"), PellarMenuStyle::classic)
{
}

MenuStyleManager& MenuStyleManager::shared()
{
    static auto* const instance = new MenuStyleManager(UserDefaults::standard());
    return *instance;
}
