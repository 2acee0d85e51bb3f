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

    /// Opens the window or brings it to the front, at a tab; without one it opens at the first, or stays
    /// where it is.
    void show(std::optional<SettingsTab> tab = std::nullopt);

private:
    void open();

    ProgramWindow::Desktop _desktop;
    SettingsModel::Dependencies _dependencies;
    QPointer<ProgramWindow> _window;
    SettingsModel* _model = nullptr; ///< the window's
};
