#include "app/ContextMenu.h"

#include "audio/AudioBridge.h"
#include "audio/AudioDeviceManager.h"
#include "audio/AudioSourceManager.h"
#include "engine/NowPlayingService.h"
#include "platform/BundleId.h"
#include "platform/Pasteboard.h"
#include "platform/Workspace.h"
#include "prefs/ListeningStats.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/WidgetManager.h"
#include "ui/menu/ContextMenuRows.h"

#include <QCoreApplication>

namespace {

ContextMenuState::Listening listening(const ListeningStats& stats)
{
    constexpr int mostArtists = 5;
    ContextMenuState::Listening listening{.today = ListeningStats::formatTime(stats.todayListeningTime()),
                                          .week = ListeningStats::formatTime(stats.weekListeningTime()),
                                          .streak = stats.currentStreak(),
                                          .topArtists = {}};
    const auto artists = stats.topArtists(mostArtists);
    for (const auto& [name, seconds] : artists) {
        listening.topArtists.append({.name = name, .time = ListeningStats::formatTime(seconds)});
    }
    return listening;
}

} // namespace

ContextMenu::ContextMenu(Sources sources) : _from(std::move(sources))
{
    NowPlayingService& service = _from.service;
    commands.openInApp = [&service] { service.openInApp(); };
    commands.copySongLink = [&service] { service.copySongLink(); };
    commands.loveTrack = [&service] { service.loveCurrentTrack(); };
    commands.unloveTrack = [&service] {
        service.runScriptIfMusic(QStringLiteral("set loved of current track to false"));
    };
    commands.undislikeTrack = [&service] {
        service.runScriptIfMusic(QStringLiteral("set disliked of current track to false"));
    };
    commands.playUpNextTrack = [&service](qint64 index) { service.playUpNextTrack(index); };
    commands.dislikeTrack = [&service] { service.dislikeCurrentTrack(); };
    commands.setSleepTimer = [&service](int minutes) { service.setSleepTimer(minutes); };
    commands.cancelSleepTimer = [&service] { service.cancelSleepTimer(); };
    commands.setOutput = [this](quint32 id) { _from.audioDevices.setOutput(id); };
    commands.copyText = [this](const QString& text) { _from.pasteboard.setText(text); };
    commands.clearRecentlyPlayed = [this] { _from.recentlyPlayed.clear(); };
    commands.setPowerMode = [this](PowerMode mode) { _from.power.manualMode = mode; };
    commands.toggleSource = [this](AudioSource source) { _from.audioSources.toggle(source); };
    commands.toggleLiveVisualizer = [this] { _from.audio.setEnabled(!_from.audio.isEnabled()); };
    commands.quit = [] { QCoreApplication::quit(); };
}

std::vector<PellarMenuItem> ContextMenu::items() const
{
    return contextMenuRows(state(), commands);
}

ContextMenuState ContextMenu::state() const
{
    const MenuVisibilityManager& visibility = _from.visibility;
    NowPlayingService& service = _from.service;
    ContextMenuState state;
    state.title = service.title();
    state.artist = service.artist();
    state.activePlayer = service.activePlayer();
    const PlayerAbilities abilities = _from.workspace.abilities(
        state.activePlayer == Player::spotify ? BundleId::spotify : BundleId::music);
    state.supportsLove = service.supportsLoveAction() && abilities.canRate;
    state.supportsDislike = service.supportsDislikeAction() && abilities.canRate;
    state.sleepTimerRemaining = service.sleepTimerRemaining();
    state.outputs = _from.audioDevices.outputDevices();
    state.currentOutput = _from.audioDevices.currentOutput();
    state.powerMode = _from.power.effectiveMode();
    state.isSystemLowPower = _from.power.systemLowPowerEnabled();
    state.enabledSources = _from.audioSources.enabledSources();
    state.isLiveVisualizerOn = _from.audio.isEnabled();
    state.isWidgetShown = _from.widget.isEnabled;
    state.showUpNext = visibility.showUpNext;
    state.showReactions = visibility.showReactions;
    state.showPowerMode = visibility.showPowerMode;
    state.showAudioSources = visibility.showAudioSources;
    state.showListeningStats = visibility.showListeningStats;
    state.showRecentlyPlayed = visibility.showRecentlyPlayed;
    // Asking the player is not free: only for what is shown.
    if (state.showReactions && state.supportsLove) {
        state.reaction = service.currentTrackReaction();
    }
    const bool hasQueue = state.activePlayer == Player::appleMusic
                              ? abilities.canListTracks
                              : state.activePlayer == Player::spotify && _from.isSpotifyAuthorized();
    if (state.showUpNext && hasQueue) {
        state.upNext = service.upNextTracks();
    }
    if (state.showListeningStats) {
        state.listening = listening(service.stats());
    }
    if (state.showRecentlyPlayed) {
        state.recentlyPlayed = _from.recentlyPlayed.tracks();
    }
    return state;
}
