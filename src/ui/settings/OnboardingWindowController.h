#pragma once

#include "ui/settings/OnboardingModel.h"
#include "ui/settings/ProgramWindow.h"

#include <QPointer>

/// The window that leads through what the program may do, once.
class OnboardingWindowController
{
public:
    OnboardingWindowController(ProgramWindow::Desktop desktop,
                               const OnboardingModel::Dependencies& dependencies);
    ~OnboardingWindowController();

    /// Shows the window unless it has been completed, which is to say closed, before. Its choices count as
    /// soon as they are made.
    void showIfNeeded();

    /// Shows the window, or brings it to the front.
    void show();

private:
    ProgramWindow::Desktop _desktop;
    OnboardingModel::Dependencies _dependencies;
    QPointer<ProgramWindow> _window;
};
