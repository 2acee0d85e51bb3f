#pragma once

#include "ui/menu/ContextMenuCommands.h"
#include "ui/menu/ContextMenuState.h"
#include "ui/menu/PellarMenuItem.h"

class AudioBridge;
class AudioDeviceManager;
class AudioSourceManager;
class MenuVisibilityManager;
class NowPlayingService;
class Pasteboard;
class PowerModeManager;
class RecentlyPlayedManager;
class WidgetManager;
class Workspace;

/// Builds the rows of the context menu: reads the engine and the managers each time a menu opens, and passes
/// the rows' commands to them.
class ContextMenu
{
public:
    /// What the rows are about. Everything outlives the menu and its rows.
    struct Sources {
        NowPlayingService& service;
        Pasteboard& pasteboard;
        AudioDeviceManager& audioDevices;
        AudioSourceManager& audioSources;
        AudioBridge& audio;
        PowerModeManager& power;
        RecentlyPlayedManager& recentlyPlayed;
        MenuVisibilityManager& visibility;
        WidgetManager& widget;
        Workspace& workspace;
        std::function<bool()> isSpotifyAuthorized; ///< asked while Spotify plays only
    };

    explicit ContextMenu(Sources sources);

    /// The rows as of now.
    std::vector<PellarMenuItem> items() const;

    /// Commands of what is built elsewhere are set here; a row without its command is not shown.
    ContextMenuCommands commands;

private:
    ContextMenuState state() const;

    Sources _from;
};
