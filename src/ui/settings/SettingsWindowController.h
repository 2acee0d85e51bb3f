#pragma once

#include "ui/settings/ProgramWindow.h"
#include "ui/settings/SettingsModel.h"

#include <QPointer>

/// The settings window: there while it is open, and then once.
class SettingsWindowController
{
public:
    SettingsWindowController(ProgramWindow::Desktop desktop, SettingsModel::Dependencies dependencies);
    ~SettingsWindowController();

    /// Shows the window, or brings it to the front.
    void show();

private:
    ProgramWindow::Desktop _desktop;
    SettingsModel::Dependencies _dependencies;
    QPointer<ProgramWindow> _window;
};
