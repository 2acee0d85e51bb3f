#include "app/AppDelegate.h"

#include "accounts/AppleMusicAuthManager.h"
#include "accounts/SpotifyAuthManager.h"
#include "app/Popups.h"
#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/TrayIcon.h"
#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "base/DebugLog.h"
#include "base/NotificationCenter.h"
#include "lyrics/LyricsService.h"
#include "platform/Appearance.h"
#include "platform/Platform.h"
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
#include "ui/pill/PillColors.h"
#include "ui/pill/PillModel.h"
#include "ui/widget/FloatingWidget.h"
#include "updates/UpdaterManager.h"

namespace {

const QString previewToggled = QStringLiteral("com.orvalen.pellar.togglePreview");

} // namespace

AppDelegate::AppDelegate(Platform& platform, UserDefaults& defaults, Appearance& appearance)
    : _platform(platform)
    , _defaults(defaults)
    , _appearance(appearance)
    , _visibility(PillVisibilityManager::shared())
    , _mediaKeys(platform)
    , _awaitedPlayer(platform.workspace, defaults)
    , _audioManager(platform.audioHardware)
    , _spotifyQueue([this] { return _service.activePlayer() == Player::spotify; }, platform.notifications)
    , _service({.platform = platform,
                .defaults = defaults,
                .sources = AudioSourceManager::shared(),
                .audio = AudioBridge::shared(),
                .power = PowerModeManager::shared(),
                .theme = ThemeManager::shared(),
                .recentlyPlayed = RecentlyPlayedManager::shared()},
               {.refreshSpotifyQueue = [this] { _spotifyQueue.refresh(); },
                .cachedSpotifyQueue = [this] { return _spotifyQueue.tracks(); },
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
                    .isSpotifyAuthorized = [this] { return _spotifyQueue.isAuthorized(); }})
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
    , _requests({.platform = platform,
                 .service = _service,
                 .activate = [this] { _statusItem->reveal(_platform.runLoop); },
                 .togglePreview = [this] { _platform.notifications.post(previewToggled); },
                 .openSettings = [this] { _settings.show(); }})
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
    dlog(QStringLiteral("Start: main menu"));
    _mainMenu = std::make_unique<MainMenu>();
    dlog(QStringLiteral("Start: updater"));
    _updateWindow = std::make_unique<UpdateWindowController>(windowDesktop(), UpdaterManager::shared());
    dlog(QStringLiteral("Start: usage ping"));
    AnalyticsManager::shared().pingIfNeeded();
    dlog(QStringLiteral("Start: audio capture"));
    _audioCapture.startAudioCapture();
    dlog(QStringLiteral("Start: observers"));
    connect(&_spotifyQueue, &SpotifyQueue::changed, this, &AppDelegate::spotifyQueueRefreshed);
    _platform.notifications.observe(previewToggled, this,
                                    [this](const QVariantMap& /*userInfo*/) { _popups->togglePreview(); });
    _contextMenu.commands.togglePreview = [this] { _platform.notifications.post(previewToggled); };
    dlog(QStringLiteral("Start: status item"));
    setup();
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
    setUpPopups();

    _statusItem =
        std::make_unique<StatusItem>(_platform.statusBar, _defaults, QStringLiteral("PellarPlayer"));
    bindStatusItem();
    _statusItem->setView(_hosting.get());

    dlog(QStringLiteral("Start: hot keys"));
    _requests.start();
    GlobalShortcuts::shared().setupGlobalShortcuts();

    dlog(QStringLiteral("Start: widget"));
    setUpWidget();
    dlog(QStringLiteral("Start: onboarding"));
    _onboarding.showIfNeeded();
    _trayIcon = std::make_unique<TrayIcon>(_service, _awaitedPlayer, _platform.runLoop,
                                           [this](ClassicMenu& menu) { _popups->buildMenu(menu); });
    connect(_trayIcon.get(), &TrayIcon::clicked, this, [this] { _statusItem->reveal(_platform.runLoop); });
}

void AppDelegate::bindStatusItem()
{
    _statusItem->bindableLength().setBinding([this] { return _visibility.preferredPillWidth(); });
    _statusItem->bindableCorners().setBinding([this] {
        return StatusItem::Corners{_pill->layout().cornerRadius, _pill->colors().background};
    });
}

void AppDelegate::setUpPopups()
{
    _popups = std::make_unique<Popups>(
        Popups::Dependencies{.platform = _platform,
                             .appearance = _appearance,
                             .contextMenu = _contextMenu,
                             .pill = *_hosting,
                             .track = [this] { return shownTrack(); },
                             .lyrics = [this]() -> LyricsModel& { return lyrics(); }});
    _hosting->contextMenuProvider = [this] { return _popups->classicMenu(); };
    _hosting->rightClickHandler = [this](const QMouseEvent& event) {
        _spotifyQueue.refreshIfShown();
        _popups->presentRightClickMenu(event);
    };
    connect(_popups.get(), &Popups::previewClosed, this, &AppDelegate::windowClosed);
    connect(&_audioManager, &AudioDeviceManager::devicesChanged, _popups.get(), &Popups::refreshMenus);
}

void AppDelegate::spotifyQueueRefreshed()
{
    _popups->refreshMenus();
    _trayIcon->refresh();
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
