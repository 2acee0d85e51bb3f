#pragma once

#include "app/AudioCaptureSupervision.h"
#include "app/ContextMenu.h"
#include "app/MainMenu.h"
#include "app/RequestHandler.h"
#include "app/SpotifyQueue.h"
#include "audio/AudioDeviceManager.h"
#include "audio/AwaitedPlayer.h"
#include "audio/MediaKeys.h"
#include "engine/NowPlayingService.h"
#include "prefs/ServiceAddresses.h"
#include "ui/settings/OnboardingWindowController.h"
#include "ui/settings/PowerModeSettingsWindowController.h"
#include "ui/settings/SettingsWindowController.h"
#include "ui/settings/UpdateWindowController.h"
#include "ui/track/TrackModel.h"

#include <QObject>

#include <memory>

class Appearance;
class FloatingWidget;
class LyricsModel;
class PillModel;
class PillVisibilityManager;
class Popups;
class StatusHostingView;
class StatusItem;
class TrayIcon;
class UserDefaults;
struct Platform;

/// Builds the program's parts and wires them: the engine and what it hears and commands, the status item with
/// its pill, the menus, the preview, the widget.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    AppDelegate(Platform& platform, UserDefaults& defaults, Appearance& appearance);
    ~AppDelegate() override;

    /// Starts everything, once the event loop is about to run.
    void applicationDidFinishLaunching();

    void perform(Request request) { _requests.perform(request); }

Q_SIGNALS:
    /// One of the windows that come and go, or the preview, has gone a while ago.
    void windowClosed();

private:
    ProgramWindow::Desktop windowDesktop();
    void setup();
    void bindStatusItem();
    void setUpPopups();
    void setUpWidget();
    void spotifyQueueRefreshed();
    LyricsModel& lyrics();
    TrackModel::Dependencies shownTrack();

    Platform& _platform;
    UserDefaults& _defaults;
    Appearance& _appearance;
    PillVisibilityManager& _visibility;
    MediaKeys _mediaKeys;
    AwaitedPlayer _awaitedPlayer;
    AudioDeviceManager _audioManager;
    SpotifyQueue _spotifyQueue;
    NowPlayingService _service;
    ContextMenu _contextMenu;
    AudioCaptureSupervision _audioCapture;
    ServiceAddresses _addresses;
    OnboardingWindowController _onboarding;
    SettingsWindowController _settings;
    PowerModeSettingsWindowController _powerModes;
    RequestHandler _requests;
    std::unique_ptr<UpdateWindowController> _updateWindow;
    std::unique_ptr<MainMenu> _mainMenu;
    std::unique_ptr<PillModel> _pill;
    std::unique_ptr<StatusHostingView> _hosting;
    std::unique_ptr<StatusItem> _statusItem;
    std::unique_ptr<TrayIcon> _trayIcon;
    std::unique_ptr<LyricsModel> _lyrics; ///< from its first use on
    std::unique_ptr<Popups> _popups;
    std::unique_ptr<FloatingWidget> _widget;
};
