#include "ui/widget/FloatingWidget.h"

#include "prefs/WidgetManager.h"

FloatingWidget::FloatingWidget(WidgetManager& manager, Ask dependencies)
    : _manager(manager)
    , _dependencies(std::move(dependencies))
    , _watch(manager.isEnabled.addNotifier([this] { applyWindowVisibility(); }))
{
}

FloatingWidget::~FloatingWidget() = default;

void FloatingWidget::restoreIfNeeded()
{
    if (_manager.isEnabled) {
        applyWindowVisibility();
    }
}

/// The window outlives the click of its own close button.
void FloatingWidget::applyWindowVisibility()
{
    if (_manager.isEnabled && !_window) {
        _window = std::make_unique<WidgetWindow>(_dependencies());
        _window->present();
    } else if (!_manager.isEnabled && _window) {
        _window->hide();
        _window.release()->deleteLater();
    }
}
