#pragma once

#include "base/RunLoop.h"
#include "ui/menu/MenuPanelFrame.h"
#include "ui/menu/PellarMenuItem.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class Appearance;
class PellarMenuModel;
class QKeyEvent;
class QMouseEvent;
class QQuickView;
class QScreen;
class StatusBar;

/// The context menu as a pane of glass below the pill. It takes the pointer and the keyboard while it is
/// open: a click beside it or Escape closes it, and so does choosing a row, before the row's command runs.
class PellarMenuPanel : public QObject
{
    Q_OBJECT

public:
    /// What the panel builds on. Everything outlives it.
    struct Desktop {
        RunLoop& runLoop;
        StatusBar& bar;
        Appearance& appearance;
    };

    using Items = std::function<std::vector<PellarMenuItem>()>;

    /// `items` are asked as the panel opens, and by `refresh`. `pill` is what it hangs from, in screen
    /// coordinates.
    PellarMenuPanel(const Desktop& desktop, Items items, const QRect& pill);
    ~PellarMenuPanel() override;

    /// Called once, when the panel is off the screen.
    std::function<void()> onClose;

    void present();

    /// Shows the rows as they are now.
    void refresh();

    /// Folds the panel up. Ignored while that is going on.
    void close();

    /// From `present` until it is off the screen.
    bool isVisible() const;

    PellarMenuModel& model() { return *_model; }
    QQuickView& view() { return *_view; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Step = MenuPanelFrame (*)(const MenuPanelFrame& from, double progress);

    void animate(Step step, const MenuPanelFrame& from, double seconds,
                 const std::function<void()>& finished);
    MenuPanelFrame openFrame() const;
    void setFrame(const MenuPanelFrame& frame);
    void resize();
    void dress();
    void startMonitoring();
    void stopMonitoring();
    bool handlePress(const QMouseEvent& event);
    bool handleKey(const QKeyEvent& event);
    void finishClosing();

    Desktop _desktop;
    Items _items;
    std::unique_ptr<PellarMenuModel> _model;
    std::unique_ptr<QQuickView> _view;
    MenuPanelPin _pin;
    QPointer<QScreen> _screen;
    MenuPanelFrame _frame; ///< on screen now
    std::unique_ptr<RunLoop::Timer> _animation;
    bool _isEntering = false;
    bool _isClosing = false;
};
