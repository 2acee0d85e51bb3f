#include "prefs/PillVisibilityManager.h"

#include "prefs/Preference.h"

namespace {

const QString showAlbumArtKey = QStringLiteral("pellar.pill.showAlbumArt");
const QString showVisualizerKey = QStringLiteral("pellar.pill.showVisualizer");
const QString showTitleKey = QStringLiteral("pellar.pill.showTitle");
const QString showPrevButtonKey = QStringLiteral("pellar.pill.showPrevButton");
const QString showNextButtonKey = QStringLiteral("pellar.pill.showNextButton");

} // namespace

PillVisibilityManager::PillVisibilityManager(UserDefaults& defaults) : _defaults(defaults)
{
    loadFlag(defaults, showAlbumArtKey, _showAlbumArt);
    loadFlag(defaults, showVisualizerKey, _showVisualizer);
    loadFlag(defaults, showTitleKey, _showTitle);
    loadFlag(defaults, showPrevButtonKey, _showPrevButton);
    loadFlag(defaults, showNextButtonKey, _showNextButton);
    _preferredPillWidth.setBinding([this] {
        return (_showAlbumArt ? 58.0 : 40.0) + (_showVisualizer ? 18 : 0) + (_showPrevButton ? 24 : 0) +
               (_showNextButton ? 24 : 0) + (_showTitle ? 61 : 0);
    });
}

PillVisibilityManager& PillVisibilityManager::shared()
{
    static auto* const instance = new PillVisibilityManager(UserDefaults::standard());
    return *instance;
}

void PillVisibilityManager::setShowAlbumArt(bool show)
{
    assignFlag(_defaults, showAlbumArtKey, _showAlbumArt, show);
}

void PillVisibilityManager::setShowVisualizer(bool show)
{
    assignFlag(_defaults, showVisualizerKey, _showVisualizer, show);
}

void PillVisibilityManager::setShowTitle(bool show)
{
    assignFlag(_defaults, showTitleKey, _showTitle, show);
}

void PillVisibilityManager::setShowPrevButton(bool show)
{
    assignFlag(_defaults, showPrevButtonKey, _showPrevButton, show);
}

void PillVisibilityManager::setShowNextButton(bool show)
{
    assignFlag(_defaults, showNextButtonKey, _showNextButton, show);
}
