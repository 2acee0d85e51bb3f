#include "app/AppDelegate.h"

#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/TrayIcon.h"
#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "platform/Platform.h"
#include "platform/StatusBar.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/PowerModeManager.h"
#include "ui/PillModel.h"

#include <QCoreApplication>
#include <QMenu>

namespace {

/// A text as a menu shows it: an ampersand is an ampersand, not a mnemonic.
QString menuText(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

AppDelegate::AppDelegate(Platform& platform, UserDefaults& defaults, Appearance& appearance)
    : _platform(platform)
    , _defaults(defaults)
    , _appearance(appearance)
    , _visibility(PillVisibilityManager::shared())
    , _service({.platform = platform,
                .defaults = defaults,
                .sources = AudioSourceManager::shared(),
                .audio = AudioBridge::shared(),
                .power = PowerModeManager::shared()})
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    setup();
}

void AppDelegate::setup()
{
    const double width = _visibility.preferredPillWidth();
    _statusItem =
        std::make_unique<StatusItem>(_platform.statusBar, _defaults, QStringLiteral("PellarPlayer"), width);

    _pill = std::make_unique<PillModel>(_service, _visibility, _appearance, _platform.statusBar.thickness());
    _hosting = std::make_unique<StatusHostingView>();
    _hosting->setTitle(QStringLiteral("Pellar"));
    _hosting->setInitialProperties({{QStringLiteral("pill"), QVariant::fromValue(_pill.get())}});
    _hosting->setSource(QUrl(QStringLiteral("qrc:/Pellar/MenuBarPlayerView.qml")));
    _hosting->contextMenuProvider = [this] {
        auto menu = std::make_unique<QMenu>();
        fillMenu(*menu);
        return menu;
    };

    _statusItem->setCornerRadius(_pill->cornerRadius());
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
    QAction* const header = menu.addAction(menuText(_service.title()));
    QFont bold = header->font();
    bold.setBold(true);
    header->setFont(bold);
    header->setEnabled(false);
    if (!_service.artist().isEmpty()) {
        menu.addAction(menuText(_service.artist()))->setEnabled(false);
    }
    menu.addSeparator();
    menu.addAction(tr("Quit Pellar"), qApp, &QCoreApplication::quit);
}
