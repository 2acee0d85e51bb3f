#include "ui/settings/PowerModeSettingsWindowController.h"

#include "ui/settings/PowerModeModel.h"

PowerModeSettingsWindowController::PowerModeSettingsWindowController(ProgramWindow::Desktop desktop,
                                                                     PowerModeManager& power)
    : _desktop(std::move(desktop))
    , _power(power)
{
}

PowerModeSettingsWindowController::~PowerModeSettingsWindowController()
{
    delete _window;
}

void PowerModeSettingsWindowController::show()
{
    if (_window.isNull() || !_window->isVisible()) { // a closed one is about to go
        const ProgramWindow::Style style{.title =
                                             QCoreApplication::translate("PowerModeWindow", "Power Modes"),
                                         .placeKey = QStringLiteral("pellar.powerModes.frame"),
                                         .size = {520, 480},
                                         .minimumSize = {460, 360}};
        _window = new ProgramWindow(_desktop, style);
        _window->setView(QStringLiteral("PowerModesView.qml"), std::make_unique<PowerModeModel>(_power));
    }
    _window->present();
}
