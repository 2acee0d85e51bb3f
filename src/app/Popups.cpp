#include "app/Popups.h"

#include "app/ContextMenu.h"
#include "platform/Appearance.h"
#include "platform/Platform.h"
#include "platform/StatusBar.h"
#include "prefs/MenuStyleManager.h"
#include "ui/lyrics/LyricsModel.h"
#include "ui/menu/ClassicMenu.h"
#include "ui/menu/PellarMenuPanel.h"
#include "ui/preview/PellarPreviewPanel.h"

#include <QMouseEvent>
#include <QWindow>

namespace {

constexpr double restSeconds = 3; // after the preview has closed: who looks twice looks soon

} // namespace

Popups::Popups(Dependencies dependencies) : _of(std::move(dependencies)) {}

Popups::~Popups() = default;

std::unique_ptr<QMenu> Popups::classicMenu() const
{
    auto menu = std::make_unique<ClassicMenu>();
    buildMenu(*menu);
    return menu;
}

void Popups::buildMenu(ClassicMenu& menu) const
{
    menu.setItems(_of.contextMenu.items(), _of.appearance.isDark());
}

void Popups::presentRightClickMenu(const QMouseEvent& event)
{
    if (_livePreviewPanel) {
        _livePreviewPanel->close();
    }
    if (MenuStyleManager::shared().style == PellarMenuStyle::classic) {
        presentClassicMenu(event.globalPosition().toPoint());
    } else if (_liveMenuPanel) {
        _liveMenuPanel->close();
    } else {
        presentGlassMenu();
    }
}

void Popups::presentClassicMenu(QPoint place)
{
    _classicMenu = classicMenu();
    _classicMenu->popup(place);
    _menuKeyboard = _of.platform.statusBar.claimKeyboard(*_classicMenu->windowHandle());
    if (_menuKeyboard) {
        connect(_menuKeyboard.get(), &KeyboardClaim::lost, _classicMenu.get(), &QMenu::close);
        connect(_classicMenu.get(), &QMenu::aboutToHide, this,
                [this] { _menuKeyboard.release()->deleteLater(); });
    }
}

void Popups::presentGlassMenu()
{
    _liveMenuPanel = std::make_unique<PellarMenuPanel>(
        Panel::Desktop{
            .runLoop = _of.platform.runLoop, .bar = _of.platform.statusBar, .appearance = _of.appearance},
        [this] { return _of.contextMenu.items(); }, _of.pill.geometry());
    _liveMenuPanel->onClose = [this] { _liveMenuPanel.release()->deleteLater(); };
    _liveMenuPanel->present();
}

void Popups::togglePreview()
{
    if (_livePreviewPanel) {
        _livePreviewPanel->close();
        return;
    }
    if (_liveMenuPanel) {
        _liveMenuPanel->close();
    }
    openPreview();
}

void Popups::openPreview()
{
    _livePreviewPanel = std::make_unique<PellarPreviewPanel>(Panel::Desktop{.runLoop = _of.platform.runLoop,
                                                                            .bar = _of.platform.statusBar,
                                                                            .appearance = _of.appearance},
                                                             _of.track(), _of.lyrics(), _of.pill.geometry());
    _livePreviewPanel->onClose = [this] {
        _livePreviewPanel.release()->deleteLater();
        _of.platform.runLoop.after(restSeconds, this, [this] {
            if (!_livePreviewPanel) {
                Q_EMIT previewClosed();
            }
        });
    };
    _livePreviewPanel->present();
}

void Popups::refreshMenus()
{
    if (_liveMenuPanel) {
        _liveMenuPanel->refresh();
    }
    auto* const classic = qobject_cast<ClassicMenu*>(_classicMenu.get());
    if (classic != nullptr && classic->isVisible()) {
        buildMenu(*classic);
    }
}
