#pragma once

#include "app/AudioCaptureSupervision.h"
#include "app/ContextMenu.h"
#include "app/MainMenu.h"
#include "app/Request.h"
#include "audio/AudioDeviceManager.h"
#include "audio/AwaitedPlayer.h"
#include "audio/MediaKeys.h"
#include "engine/NowPlayingService.h"
#include "prefs/PellarShortcut.h"
#include "prefs/ServiceAddresses.h"
#include "ui/settings/OnboardingWindowController.h"
#include "ui/settings/PowerModeSettingsWindowController.h"
#include "ui/settings/SettingsWindowController.h"
#include "ui/settings/UpdateWindowController.h"
#include "ui/track/TrackModel.h"

#include <QObject>

#include <memory>

class Appearance;
class ClassicMenu;
class FloatingWidget;
class KeyboardClaim;
class LyricsModel;
class PellarMenuPanel;
class PellarPreviewPanel;
class PillModel;
class PillVisibilityManager;
class QMenu;
class QMouseEvent;
class SpotifyAPI;
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

    /// Does what is asked for from outside. Playback waits until the players have had the time to tell of
    /// themselves, when the program has only just started.
    void perform(Request request);

    /// Brings the pill to the front.
    void activate();

Q_SIGNALS:
    /// One of the windows that come and go has gone, a while ago.
    void windowClosed();

private:
    ProgramWindow::Desktop windowDesktop();
    void setup();
    void bindStatusItem();
    void handleHotKey(PellarShortcut shortcut);
    void observeRequests();
    void performLater(PellarShortcut shortcut);
    void openSettings() const;
    void refreshMenus();
    void spotifyQueueRefreshed();
    SpotifyAPI& spotifyQueue();
    bool isSpotifyAuthorized();
    void buildMenu(ClassicMenu& menu) const;
    void presentRightClickMenu(const QMouseEvent& event);
    void presentClassicMenu(QPoint place);
    void presentGlassMenu();
    void togglePreview();
    void giveBackMemory();
    LyricsModel& lyrics();
    TrackModel::Dependencies shownTrack();
    void setUpWidget();

    Platform& _platform;
    UserDefaults& _defaults;
    Appearance& _appearance;
    PillVisibilityManager& _visibility;
    bool _followsSpotifyAccount = false;
    MediaKeys _mediaKeys;
    AwaitedPlayer _awaitedPlayer;
    AudioDeviceManager _audioManager;
    NowPlayingService _service;
    ContextMenu _contextMenu;
    AudioCaptureSupervision _audioCapture;
    ServiceAddresses _addresses;
    OnboardingWindowController _onboarding;
    SettingsWindowController _settings;
    PowerModeSettingsWindowController _powerModes;
    std::unique_ptr<UpdateWindowController> _updateWindow;
    std::unique_ptr<MainMenu> _mainMenu;
    Uptime _launched;
    std::unique_ptr<PillModel> _pill;
    std::unique_ptr<StatusHostingView> _hosting;
    std::unique_ptr<StatusItem> _statusItem;
    std::unique_ptr<TrayIcon> _trayIcon;
    std::unique_ptr<QMenu> _classicMenu;
    std::unique_ptr<KeyboardClaim> _menuKeyboard;    ///< the classic menu's
    std::unique_ptr<PellarMenuPanel> _liveMenuPanel; ///< while it exists
    std::unique_ptr<LyricsModel> _lyrics;            ///< from its first use on
    std::unique_ptr<FloatingWidget> _widget;
    std::unique_ptr<PellarPreviewPanel> _livePreviewPanel; ///< while it exists
};
