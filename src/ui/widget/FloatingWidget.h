#pragma once

#include "ui/widget/WidgetWindow.h"

/// Has the widget on the screen while it is wanted, and nothing of it while it is not.
class FloatingWidget : public QObject
{
    Q_OBJECT

public:
    /// Asked for what the widget builds on when the widget is made.
    using Ask = std::function<WidgetWindow::Dependencies()>;

    FloatingWidget(WidgetManager& manager, Ask dependencies);
    ~FloatingWidget() override;

    /// Shows it if it was shown when the program ended.
    void restoreIfNeeded();

private:
    void applyWindowVisibility();

    WidgetManager& _manager;
    Ask _dependencies;
    std::unique_ptr<WidgetWindow> _window; ///< while it is wanted
    QPropertyNotifier _watch;
};
