#pragma once

#include "base/RunLoop.h"
#include "ui/controls/GlassColors.h"
#include "ui/panel/PanelFrame.h"
#include "ui/panel/PanelStyle.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QVariantMap>

#include <functional>
#include <memory>

class Appearance;
class KeyboardClaim;
class QKeyEvent;
class QMouseEvent;
class QQuickView;
class QScreen;
class StatusBar;

/// A pane of glass that drops out from under the pill. While it is open it has the pointer and the keyboard,
/// without being activated: the program in front stays so. A click beside it closes it, and so do its closing
/// keys. It is as large as the implicit size of its view, and grows and shrinks with that.
class Panel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QSizeF openSize READ openSize NOTIFY openSizeChanged)
    Q_PROPERTY(QSizeF paneSize READ paneSize NOTIFY paneSizeChanged)
    Q_PROPERTY(GlassColors glass READ glass NOTIFY appearanceChanged)
    Q_PROPERTY(double shadowExtent READ shadowExtent NOTIFY appearanceChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius CONSTANT)
    Q_PROPERTY(double room READ room CONSTANT)

public:
    /// What the panel builds on. Everything outlives it.
    struct Desktop {
        RunLoop& runLoop;
        StatusBar& bar;
        Appearance& appearance;
    };

    /// `pill` is what the panel hangs from, in screen coordinates.
    Panel(const Desktop& desktop, const PanelStyle& style, const QRect& pill);
    ~Panel() override;

    /// Called once, when the panel is off the screen. It may delete the panel.
    std::function<void()> onClose;

    /// Shows the view; to be called once, after `setView`.
    void present();

    /// Folds the panel up. Ignored while that is going on.
    Q_INVOKABLE void close();

    /// From `present` until it is off the screen.
    bool isVisible() const;
    bool isClosing() const { return _isClosing; }

    /// The size of the panel once it has unfolded, in points: that of its view, as far as there is room.
    QSizeF openSize() const { return _open.rect.size(); }

    /// The size of the panel now, in points.
    QSizeF paneSize() const { return _paneSize; }

    bool isDark() const;
    /// Whether what is below the panel shines through it.
    bool isBlended() const;
    GlassColors glass() const { return GlassColors::forDesktop(isDark(), isBlended()); }
    /// How far the shadow reaches beyond the panel, in points; 0 for none.
    double shadowExtent() const;
    double cornerRadius() const { return _style.cornerRadius; }
    /// How high a panel below the pill can be to lie on the screen as a whole, in points.
    double room() const;

    QQuickView& view() { return *_view; }

Q_SIGNALS:
    void openSizeChanged();
    void paneSizeChanged();
    void appearanceChanged();

protected:
    /// Loads the view, an item that has the required property `panel` besides those given. The subclass calls
    /// it in its constructor.
    void setView(const QUrl& source, const QVariantMap& properties);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void animate(double seconds, const std::function<void(double progress)>& step,
                 const std::function<void()>& finished);
    void setFrame(const PanelFrame& frame);
    QRectF freePart() const;
    QRectF place() const;
    void resize();
    void startMonitoring();
    void stopMonitoring();
    bool handleKey(const QObject* watched, QKeyEvent& event);
    bool closesBeside(const QMouseEvent& event);
    void handOn(const QMouseEvent& event) const;
    void finishClosing();

    Desktop _desktop;
    PanelStyle _style;
    QRect _pill;
    QPointer<QScreen> _screen;
    std::unique_ptr<QQuickView> _view;
    PanelFrame _open;  ///< unfolded
    PanelFrame _frame; ///< on screen now
    QSize _paneSize;   ///< of that, in whole points
    std::unique_ptr<RunLoop::Timer> _animation;
    std::unique_ptr<KeyboardClaim> _keyboard;
    bool _isEntering = false;
    bool _isClosing = false;
    bool _isMonitoring = false;
};
