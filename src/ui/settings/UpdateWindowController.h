#pragma once

#include "ui/settings/ProgramWindow.h"

#include <QPointer>

class UpdaterManager;

/// The window of an update, from the user's question or the first offer to the end: it comes and goes by
/// itself, and to the front when the user asks again. Closing it puts an offer off, and ends anything else.
class UpdateWindowController : public QObject
{
    Q_OBJECT

public:
    /// The updater outlives it.
    UpdateWindowController(ProgramWindow::Desktop desktop, UpdaterManager& updater);
    ~UpdateWindowController() override;

private:
    bool isOpen() const { return !_window.isNull() && _window->isVisible(); }
    void follow();
    void open();

    ProgramWindow::Desktop _desktop;
    UpdaterManager& _updater;
    QPointer<ProgramWindow> _window;
};
