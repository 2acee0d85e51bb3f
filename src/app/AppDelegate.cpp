#include "app/AppDelegate.h"

#include "accounts/AppleMusicAuthManager.h"
#include "accounts/SpotifyAPI.h"
#include "accounts/SpotifyAuthManager.h"
#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/TrayIcon.h"
#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "base/DebugLog.h"
#include "base/NotificationCenter.h"
#include "linux/desktop/MemoryFootprint.h"
#include "lyrics/LyricsService.h"
#include "platform/Appearance.h"
#include "platform/HotKeys.h"
#include "platform/Platform.h"
#include "platform/RemoteRequests.h"
#include "platform/StatusBar.h"
#include "prefs/AnalyticsManager.h"
#include "prefs/GlobalShortcuts.h"
#include "prefs/KeyboardShortcutManager.h"
#include "prefs/LaunchAtLogin.h"
#include "prefs/MenuStyleManager.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"
#include "prefs/WidgetManager.h"
#include "ui/lyrics/LyricsModel.h"
#include "ui/menu/ClassicMenu.h"
#include "ui/menu/PellarMenuPanel.h"
#include "ui/pill/PillColors.h"
#include "ui/pill/PillModel.h"
#include "ui/preview/PellarPreviewPanel.h"
#include "ui/widget/FloatingWidget.h"
#include "updates/UpdaterManager.h"

#include <QMouseEvent>

#include <algorithm>

namespace {

const QString previewToggled = QStringLiteral("com.orvalen.pellar.togglePreview");
constexpr double restSeconds = 3; // after the preview has closed: who looks twice looks soon

} // namespace

AppDelegate::AppDelegate(Platform& platform, UserDefaults& defaults, Appearance& appearance)
    : _platform(platform)
    , _defaults(defaults)
    , _appearance(appearance)
    , _visibility(PillVisibilityManager::shared())
    , _mediaKeys(platform)
    , _awaitedPlayer(platform.workspace, defaults)
    , _audioManager(platform.audioHardware)
    , _service({.platform = platform,
                .defaults = defaults,
                .sources = AudioSourceManager::shared(),
                .audio = AudioBridge::shared(),
                .power = PowerModeManager::shared(),
                .theme = ThemeManager::shared(),
                .recentlyPlayed = RecentlyPlayedManager::shared()},
               {.refreshSpotifyQueue = [this] { spotifyQueue().refreshQueueAsync(); },
                .cachedSpotifyQueue = [this] { return spotifyQueue().cachedQueue(); },
                .sendMediaKey = [this](MediaKeys::Key key) { _mediaKeys.send(key); }})
    , _contextMenu({.service = _service,
                    .pasteboard = platform.pasteboard,
                    .audioDevices = _audioManager,
                    .audioSources = AudioSourceManager::shared(),
                    .audio = AudioBridge::shared(),
                    .power = PowerModeManager::shared(),
                    .recentlyPlayed = RecentlyPlayedManager::shared(),
                    .visibility = MenuVisibilityManager::shared(),
                    .widget = WidgetManager::shared(),
                    .workspace = platform.workspace,
                    .isSpotifyAuthorized = [this] { return isSpotifyAuthorized(); }})
    , _audioCapture({.platform = platform,
                     .service = _service,
                     .sources = AudioSourceManager::shared(),
                     .devices = _audioManager,
                     .power = PowerModeManager::shared(),
                     .visibility = _visibility,
                     .bridge = AudioBridge::shared()})
    , _addresses(defaults)
    , _onboarding(windowDesktop(), {.platform = platform,
                                    .service = _service,
                                    .audio = AudioBridge::shared(),
                                    .analytics = AnalyticsManager::shared(),
                                    .hasUsagePing = !_addresses.usagePing.isEmpty()})
    , _settings(windowDesktop(), {.pill = _visibility,
                                  .menu = MenuVisibilityManager::shared(),
                                  .menuStyle = MenuStyleManager::shared(),
                                  .widget = WidgetManager::shared(),
                                  .theme = ThemeManager::shared(),
                                  .audio = AudioBridge::shared(),
                                  .launch = LaunchAtLogin::shared(),
                                  .analytics = AnalyticsManager::shared(),
                                  .shortcuts = {.manager = KeyboardShortcutManager::shared(),
                                                .registered = GlobalShortcuts::shared(),
                                                .hotKeys = platform.hotKeys},
                                  .updater = UpdaterManager::shared,
                                  .keychain = platform.keychain,
                                  .workspace = platform.workspace,
                                  .addresses = _addresses,
                                  .spotify = SpotifyAuthManager::shared,
                                  .appleMusic = AppleMusicAuthManager::shared,
                                  .setUpPermissions = [this] { _onboarding.show(); }})
    , _powerModes(windowDesktop(), PowerModeManager::shared())
{
    _contextMenu.commands.openSettings = [this] { _settings.show(); };
    _contextMenu.commands.openPowerModeSettings = [this] { _powerModes.show(); };
}

AppDelegate::~AppDelegate() = default;

ProgramWindow::Desktop AppDelegate::windowDesktop()
{
    constexpr double goneSeconds = 1;
    return {.defaults = _defaults, .appearance = _appearance, .closed = [this] {
                _platform.runLoop.after(goneSeconds, this, [this] { Q_EMIT windowClosed(); });
            }};
}

void AppDelegate::applicationDidFinishLaunching()
{
    _launched = _platform.runLoop.uptime();
    dlog(QStringLiteral("Start: main menu"));
    _mainMenu = std::make_unique<MainMenu>();
    dlog(QStringLiteral("Start: updater"));
    _updateWindow = std::make_unique<UpdateWindowController>(windowDesktop(), UpdaterManager::shared());
    dlog(QStringLiteral("Start: usage ping"));
    AnalyticsManager::shared().pingIfNeeded();
    dlog(QStringLiteral("Start: audio capture"));
    _audioCapture.startAudioCapture();
    dlog(QStringLiteral("Start: observers"));
    _platform.notifications.observe(previewToggled, this, [this](const QVariantMap&) { togglePreview(); });
    _contextMenu.commands.togglePreview = [this] { _platform.notifications.post(previewToggled); };
    observeRequests();
    dlog(QStringLiteral("Start: status item"));
    _platform.notifications.observe(SpotifyAPI::queueRefreshedNotification, this,
                                    [this](const QVariantMap& /*userInfo*/) { spotifyQueueRefreshed(); });
    setup();
}

void AppDelegate::observeRequests()
{
    connect(&_platform.remoteRequests, &RemoteRequests::activated, this, &AppDelegate::activate);
    connect(&_platform.remoteRequests, &RemoteRequests::actionRequested, this, [this](const QString& action) {
        if (const auto request = withRawValue<Request>(action)) {
            perform(*request);
        } else {
            dlog(QStringLiteral("Requests: \"%1\" is not known").arg(action));
        }
    });
}

void AppDelegate::activate()
{
    _statusItem->reveal(_platform.runLoop);
}

void AppDelegate::perform(Request request)
{
    switch (request) {
    case Request::playPause:
        performLater(PellarShortcut::playPause);
        break;
    case Request::next:
        performLater(PellarShortcut::nextTrack);
        break;
    case Request::previous:
        performLater(PellarShortcut::previousTrack);
        break;
    case Request::togglePreview:
        _platform.notifications.post(previewToggled);
        break;
    case Request::settings:
        openSettings();
        break;
    case Request::quit:
        QCoreApplication::quit();
        break;
    }
}

void AppDelegate::performLater(PellarShortcut shortcut)
{
    constexpr double settling = 1; // seconds
    const double age = _platform.runLoop.uptime() - _launched;
    _platform.runLoop.after(std::max(0.0, settling - age), this,
                            [this, shortcut] { handleHotKey(shortcut); });
}

/// As the row of the menu does.
void AppDelegate::openSettings() const
{
    if (_contextMenu.commands.openSettings) {
        _contextMenu.commands.openSettings();
    } else {
        dlog(QStringLiteral("Requests: this build has no settings window"));
    }
}

void AppDelegate::setup()
{
    const PillModel::Dependencies shown{.service = _service,
                                        .visibility = _visibility,
                                        .theme = ThemeManager::shared(),
                                        .power = PowerModeManager::shared(),
                                        .audio = AudioBridge::shared(),
                                        .appearance = _appearance,
                                        .runLoop = _platform.runLoop,
                                        .notifications = _platform.notifications,
                                        .haptics = _platform.haptics};
    _pill = std::make_unique<PillModel>(shown, _platform.statusBar.thickness());
    _hosting = std::make_unique<StatusHostingView>();
    _hosting->setTitle(QStringLiteral("Pellar"));
    _hosting->setInitialProperties({{QStringLiteral("pill"), QVariant::fromValue(_pill.get())}});
    _hosting->setSource(QUrl(QStringLiteral("qrc:/Pellar/Pill/MenuBarPlayerView.qml")));
    _hosting->contextMenuProvider = [this] {
        auto menu = std::make_unique<ClassicMenu>();
        buildMenu(*menu);
        return menu;
    };
    _hosting->rightClickHandler = [this](const QMouseEvent& event) { presentRightClickMenu(event); };

    _statusItem =
        std::make_unique<StatusItem>(_platform.statusBar, _defaults, QStringLiteral("PellarPlayer"));
    bindStatusItem();
    _statusItem->setView(_hosting.get());
    connect(&_audioManager, &AudioDeviceManager::devicesChanged, this, &AppDelegate::refreshMenus);

    dlog(QStringLiteral("Start: hot keys"));
    connect(&GlobalShortcuts::shared(), &GlobalShortcuts::pressed, this, &AppDelegate::handleHotKey);
    GlobalShortcuts::shared().setupGlobalShortcuts();

    dlog(QStringLiteral("Start: widget"));
    setUpWidget();
    dlog(QStringLiteral("Start: onboarding"));
    _onboarding.showIfNeeded();
    _trayIcon = std::make_unique<TrayIcon>(_service, _awaitedPlayer, _platform.runLoop,
                                           [this](ClassicMenu& menu) { buildMenu(menu); });
    connect(_trayIcon.get(), &TrayIcon::clicked, _hosting.get(), &QWindow::raise);
}

void AppDelegate::handleHotKey(PellarShortcut shortcut)
{
    switch (shortcut) {
    case PellarShortcut::playPause:
        _service.togglePlayPause();
        break;
    case PellarShortcut::nextTrack:
        _service.nextTrack();
        break;
    case PellarShortcut::previousTrack:
        _service.previousTrack();
        break;
    }
}

void AppDelegate::bindStatusItem()
{
    _statusItem->bindableLength().setBinding([this] { return _visibility.preferredPillWidth(); });
    _statusItem->bindableCorners().setBinding([this] {
        return StatusItem::Corners{_pill->layout().cornerRadius, _pill->colors().background};
    });
}

void AppDelegate::buildMenu(ClassicMenu& menu) const
{
    menu.setItems(_contextMenu.items(), _appearance.isDark());
}

/// The account is looked up in the keyring when Spotify plays for the first time, and not before.
SpotifyAPI& AppDelegate::spotifyQueue()
{
    if (!std::exchange(_followsSpotifyAccount, true)) {
        connect(&SpotifyAuthManager::shared(), &SpotifyAuthManager::isAuthorizedChanged, this, [this] {
            if (isSpotifyAuthorized() && _service.activePlayer() == Player::spotify) {
                spotifyQueue().refreshQueueAsync();
            }
            spotifyQueueRefreshed();
        });
    }
    return SpotifyAPI::shared();
}

bool AppDelegate::isSpotifyAuthorized()
{
    spotifyQueue();
    return SpotifyAuthManager::shared().isAuthorized();
}

void AppDelegate::spotifyQueueRefreshed()
{
    refreshMenus();
    _trayIcon->refresh();
}

/// Headphones may come or go while their list is open.
void AppDelegate::refreshMenus()
{
    if (_liveMenuPanel) {
        _liveMenuPanel->refresh();
    }
    auto* const classic = qobject_cast<ClassicMenu*>(_classicMenu.get());
    if (classic != nullptr && classic->isVisible()) {
        buildMenu(*classic);
    }
}

void AppDelegate::presentRightClickMenu(const QMouseEvent& event)
{
    if (_livePreviewPanel) {
        _livePreviewPanel->close();
    }
    if (_service.activePlayer() == Player::spotify && isSpotifyAuthorized()) {
        spotifyQueue().refreshQueueAsync();
    }
    if (MenuStyleManager::shared().style == PellarMenuStyle::classic) {
        presentClassicMenu(event.globalPosition().toPoint());
    } else if (_liveMenuPanel) {
        _liveMenuPanel->close();
    } else {
        presentGlassMenu();
    }
}

void AppDelegate::presentClassicMenu(QPoint place)
{
    _classicMenu = _hosting->contextMenuProvider();
    _classicMenu->popup(place);
    _menuKeyboard = _platform.statusBar.claimKeyboard(*_classicMenu->windowHandle());
    if (_menuKeyboard) {
        connect(_menuKeyboard.get(), &KeyboardClaim::lost, _classicMenu.get(), &QMenu::close);
        connect(_classicMenu.get(), &QMenu::aboutToHide, this,
                [this] { _menuKeyboard.release()->deleteLater(); });
    }
}

void AppDelegate::presentGlassMenu()
{
    _liveMenuPanel = std::make_unique<PellarMenuPanel>(
        Panel::Desktop{.runLoop = _platform.runLoop, .bar = _platform.statusBar, .appearance = _appearance},
        [this] { return _contextMenu.items(); }, _hosting->geometry());
    _liveMenuPanel->onClose = [this] { _liveMenuPanel.release()->deleteLater(); };
    _liveMenuPanel->present();
}

/// Only one of the two panels is open at a time.
void AppDelegate::togglePreview()
{
    if (_livePreviewPanel) {
        _livePreviewPanel->close();
        return;
    }
    if (_liveMenuPanel) {
        _liveMenuPanel->close();
    }
    _livePreviewPanel = std::make_unique<PellarPreviewPanel>(
        Panel::Desktop{.runLoop = _platform.runLoop, .bar = _platform.statusBar, .appearance = _appearance},
        shownTrack(), lyrics(), _hosting->geometry());
    _livePreviewPanel->onClose = [this] {
        _livePreviewPanel.release()->deleteLater();
        _platform.runLoop.after(restSeconds, this, [this] { giveBackMemory(); });
    };
    _livePreviewPanel->present();
}

/// A card needs a good deal of Qt Quick that the pill does not.
void AppDelegate::giveBackMemory()
{
    if (!_livePreviewPanel) {
        releaseReadOnlyPages();
    }
}

LyricsModel& AppDelegate::lyrics()
{
    if (!_lyrics) {
        _lyrics = std::make_unique<LyricsModel>(LyricsModel::Dependencies{
            .service = _service, .lyrics = LyricsService::shared(), .runLoop = _platform.runLoop});
    }
    return *_lyrics;
}

TrackModel::Dependencies AppDelegate::shownTrack()
{
    return {.service = _service,
            .theme = ThemeManager::shared(),
            .power = PowerModeManager::shared(),
            .appearance = _appearance,
            .runLoop = _platform.runLoop,
            .clock = *_pill->clock()};
}

void AppDelegate::setUpWidget()
{
    WidgetManager& manager = WidgetManager::shared();
    _widget = std::make_unique<FloatingWidget>(manager, [this, &manager] {
        return WidgetWindow::Dependencies{.manager = manager,
                                          .defaults = _defaults,
                                          .windows = _platform.floatingWindows,
                                          .bar = _platform.statusBar,
                                          .lyrics = lyrics(),
                                          .track = shownTrack()};
    });
    _widget->restoreIfNeeded();
    _contextMenu.commands.toggleWidget = [&manager] { manager.isEnabled = !manager.isEnabled; };
}
