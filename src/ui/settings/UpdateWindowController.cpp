#include "ui/settings/UpdateWindowController.h"

#include "ui/settings/UpdateModel.h"

UpdateWindowController::UpdateWindowController(ProgramWindow::Desktop desktop, UpdaterManager& updater)
    : _desktop(std::move(desktop))
    , _updater(updater)
{
    connect(&_updater, &UpdaterManager::stateChanged, this, &UpdateWindowController::follow);
    connect(&_updater, &UpdaterManager::askedFor, this, [this] {
        if (isOpen()) {
            _window->present();
        }
    });
}

UpdateWindowController::~UpdateWindowController()
{
    delete _window;
}

void UpdateWindowController::follow()
{
    const bool isWanted = _updater.state() != UpdaterManager::State::idle;
    if (isWanted && !isOpen()) {
        open();
    } else if (!isWanted && isOpen()) {
        _window->close();
    }
}

void UpdateWindowController::open()
{
    const ProgramWindow::Style style{.title = tr("Software Update"),
                                     .placeKey = QStringLiteral("pellar.update.frame"),
                                     .size = {520, 380},
                                     .minimumSize = {440, 240}};
    _window = new ProgramWindow(_desktop, style);
    _window->onClose = [this] {
        if (_updater.state() == UpdaterManager::State::offered) {
            _updater.remindLater();
        } else if (_updater.state() != UpdaterManager::State::idle) {
            _updater.cancel();
        }
    };
    _window->setView(QStringLiteral("UpdateView.qml"), std::make_unique<UpdateModel>(_updater));
    _window->present();
}
