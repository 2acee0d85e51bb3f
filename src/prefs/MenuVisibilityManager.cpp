#include "prefs/MenuVisibilityManager.h"

#include "prefs/Preference.h"

namespace {

const QString showUpNextKey = QStringLiteral("pellar.menu.show.upNext");
const QString showReactionsKey = QStringLiteral("pellar.menu.show.reactions");
const QString showPowerModeKey = QStringLiteral("pellar.menu.show.powerMode");
const QString showAudioSourcesKey = QStringLiteral("pellar.menu.show.audioSources");
const QString showListeningStatsKey = QStringLiteral("pellar.menu.show.stats");
const QString showRecentlyPlayedKey = QStringLiteral("pellar.menu.show.recent");

} // namespace

MenuVisibilityManager::MenuVisibilityManager(UserDefaults& defaults) : _defaults(defaults)
{
    loadFlag(defaults, showUpNextKey, _showUpNext);
    loadFlag(defaults, showReactionsKey, _showReactions);
    loadFlag(defaults, showPowerModeKey, _showPowerMode);
    loadFlag(defaults, showAudioSourcesKey, _showAudioSources);
    loadFlag(defaults, showListeningStatsKey, _showListeningStats);
    loadFlag(defaults, showRecentlyPlayedKey, _showRecentlyPlayed);
}

MenuVisibilityManager& MenuVisibilityManager::shared()
{
    static auto* const instance = new MenuVisibilityManager(UserDefaults::standard());
    return *instance;
}

void MenuVisibilityManager::setShowUpNext(bool show)
{
    assignFlag(_defaults, showUpNextKey, _showUpNext, show);
}

void MenuVisibilityManager::setShowReactions(bool show)
{
    assignFlag(_defaults, showReactionsKey, _showReactions, show);
}

void MenuVisibilityManager::setShowPowerMode(bool show)
{
    assignFlag(_defaults, showPowerModeKey, _showPowerMode, show);
}

void MenuVisibilityManager::setShowAudioSources(bool show)
{
    assignFlag(_defaults, showAudioSourcesKey, _showAudioSources, show);
}

void MenuVisibilityManager::setShowListeningStats(bool show)
{
    assignFlag(_defaults, showListeningStatsKey, _showListeningStats, show);
}

void MenuVisibilityManager::setShowRecentlyPlayed(bool show)
{
    assignFlag(_defaults, showRecentlyPlayedKey, _showRecentlyPlayed, show);
}
