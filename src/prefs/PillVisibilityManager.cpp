#include "prefs/PillVisibilityManager.h"

PillVisibilityManager& PillVisibilityManager::shared()
{
    static auto* const instance = new PillVisibilityManager(UserDefaults::standard());
    return *instance;
}

double PillVisibilityManager::preferredPillWidth() const
{
    return (showAlbumArt ? 58.0 : 40.0) + (showVisualizer ? 18 : 0) + (showPrevButton ? 24 : 0) +
           (showNextButton ? 24 : 0) + (showTitle ? 61 : 0);
}
