#include "ui/settings/SettingsWindowController.h"

#include <QCoreApplication>

SettingsWindowController::SettingsWindowController(ProgramWindow::Desktop desktop,
                                                   SettingsModel::Dependencies dependencies)
    : _desktop(std::move(desktop))
    , _dependencies(std::move(dependencies))
{
}

SettingsWindowController::~SettingsWindowController()
{
    delete _window;
}

void SettingsWindowController::show()
{
    if (_window.isNull() || !_window->isVisible()) { // a closed one is about to go
        const ProgramWindow::Style style{.title = QCoreApplication::translate("SettingsWindow", "Settings"),
                                         .placeKey = QStringLiteral("pellar.settings.frame"),
                                         .size = {780, 640},
                                         .minimumSize = {640, 420}};
        _window = new ProgramWindow(_desktop, style);
        _window->setView(QStringLiteral("SettingsView.qml"), std::make_unique<SettingsModel>(_dependencies));
    }
    _window->present();
}
