#include "prefs/MenuVisibilityManager.h"

MenuVisibilityManager& MenuVisibilityManager::shared()
{
    static auto* const instance = new MenuVisibilityManager(UserDefaults::standard());
    return *instance;
}
