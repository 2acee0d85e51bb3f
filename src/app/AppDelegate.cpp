#include "app/AppDelegate.h"

#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/TrayIcon.h"
#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "platform/Appearance.h"
#include "platform/Platform.h"
#include "platform/StatusBar.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/PowerModeManager.h"
#include "prefs/ThemeManager.h"
#include "ui/PillColors.h"
#include "ui/PillModel.h"

#include <QCoreApplication>
#include <QMenu>

namespace {

/// A text as a menu shows it: in one line of some 300 points, and an ampersand is no mnemonic.
QString menuText(const QString& text, const QMenu& menu)
{
    constexpr int width = 300;
    return menu.fontMetrics()
        .elidedText(text.simplified(), Qt::ElideRight, width)
        .replace(u'&', QStringLiteral("&&"));
}

/// The colours of a menu on a desktop that says light or dark where the palette does not follow it.
QPalette menuPalette(bool isDark)
{
    const QColor background = PillColors::forDesktop(isDark).background;
    QPalette palette(background, background);
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Light, background); // no shine behind disabled rows
    return palette;
}

} // namespace

AppDelegate::AppDelegate(Platform& platform, UserDefaults& defaults, Appearance& appearance)
    : _platform(platform)
    , _defaults(defaults)
    , _appearance(appearance)
    , _visibility(PillVisibilityManager::shared())
    , _mediaKeys(platform)
    , _audioManager(platform.audioHardware)
    , _service({.platform = platform,
                .defaults = defaults,
                .sources = AudioSourceManager::shared(),
                .audio = AudioBridge::shared(),
                .power = PowerModeManager::shared()},
               {.sendMediaKey = [this](MediaKeys::Key key) { _mediaKeys.send(key); }})
    , _audioCapture(platform, _service, AudioSourceManager::shared(), PowerModeManager::shared(),
                    AudioBridge::shared())
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    _audioCapture.startAudioCapture();
    setup();
}

void AppDelegate::setup()
{
    const double width = _visibility.preferredPillWidth();
    _statusItem =
        std::make_unique<StatusItem>(_platform.statusBar, _defaults, QStringLiteral("PellarPlayer"), width);

    const PillModel::Dependencies shown{.service = _service,
                                        .visibility = _visibility,
                                        .theme = ThemeManager::shared(),
                                        .power = PowerModeManager::shared(),
                                        .audio = AudioBridge::shared(),
                                        .appearance = _appearance,
                                        .runLoop = _platform.runLoop,
                                        .notifications = _platform.notifications};
    _pill = std::make_unique<PillModel>(shown, _platform.statusBar.thickness());
    _hosting = std::make_unique<StatusHostingView>();
    _hosting->setTitle(QStringLiteral("Pellar"));
    _hosting->setInitialProperties({{QStringLiteral("pill"), QVariant::fromValue(_pill.get())}});
    _hosting->setSource(QUrl(QStringLiteral("qrc:/Pellar/MenuBarPlayerView.qml")));
    _hosting->contextMenuProvider = [this] {
        auto menu = std::make_unique<QMenu>();
        fillMenu(*menu);
        return menu;
    };

    const auto setCorners = [this] {
        _statusItem->setCorners(_pill->layout().cornerRadius, _pill->colors().background);
    };
    connect(_pill.get(), &PillModel::colorsChanged, _statusItem.get(), setCorners);
    setCorners();
    _statusItem->setView(_hosting.get());
    bindPillVisibilityToStatusItem();

    _trayIcon = std::make_unique<TrayIcon>(_service, [this](QMenu& menu) { fillMenu(menu); });
    connect(_trayIcon.get(), &TrayIcon::clicked, _hosting.get(), &QWindow::raise);
}

void AppDelegate::bindPillVisibilityToStatusItem()
{
    connect(&_visibility, &PillVisibilityManager::preferredPillWidthChanged, this,
            [this] { _statusItem->setLength(_visibility.preferredPillWidth()); });
}

void AppDelegate::fillMenu(QMenu& menu)
{
    menu.setPalette(menuPalette(_appearance.isDark()));
    QAction* const header = menu.addAction(menuText(_service.title(), menu));
    QFont bold = header->font();
    bold.setBold(true);
    header->setFont(bold);
    header->setEnabled(false);
    if (!_service.artist().isEmpty()) {
        menu.addAction(menuText(_service.artist(), menu))->setEnabled(false);
    }
    menu.addSeparator();
    menu.addAction(tr("Quit Pellar"), qApp, &QCoreApplication::quit);
}
