#pragma once

#include "ui/settings/ProgramWindow.h"

#include <QPointer>

class PowerModeManager;

/// The power mode window: there while it is open, and then once.
class PowerModeSettingsWindowController
{
public:
    PowerModeSettingsWindowController(ProgramWindow::Desktop desktop, PowerModeManager& power);
    ~PowerModeSettingsWindowController();

    /// Opens the window or brings it to the front.
    void show();

private:
    ProgramWindow::Desktop _desktop;
    PowerModeManager& _power;
    QPointer<ProgramWindow> _window;
};
