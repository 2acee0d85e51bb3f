#include "ui/settings/OnboardingWindowController.h"

#include "platform/UserDefaults.h"

#include <QCoreApplication>

namespace {

const QString completeKey = QStringLiteral("pellar_onboarding_complete");

} // namespace

OnboardingWindowController::OnboardingWindowController(ProgramWindow::Desktop desktop,
                                                       const OnboardingModel::Dependencies& dependencies)
    : _desktop(std::move(desktop))
    , _dependencies(dependencies)
{
}

OnboardingWindowController::~OnboardingWindowController()
{
    delete _window;
}

void OnboardingWindowController::showIfNeeded()
{
    if (!_desktop.defaults.boolean(completeKey).value_or(false)) {
        show();
    }
}

void OnboardingWindowController::show()
{
    if (_window.isNull() || !_window->isVisible()) { // a closed one is about to go
        const ProgramWindow::Style style{
            .title = QCoreApplication::translate("OnboardingWindow", "Welcome to Pellar"),
            .placeKey = QStringLiteral("pellar.onboarding.frame"),
            .size = {640, 880},
            .minimumSize = {480, 420}};
        _window = new ProgramWindow(_desktop, style);
        _window->onClose = [this] { _desktop.defaults.setObject(completeKey, true); };
        _window->setView(QStringLiteral("OnboardingView.qml"),
                         std::make_unique<OnboardingModel>(_dependencies));
    }
    _window->present();
}
