#pragma once

#include "base/RunLoop.h"
#include "ui/track/TrackModel.h"
#include "ui/widget/WidgetLayout.h"

#include <QProperty>
#include <QQuickView>

#include <functional>
#include <memory>

class FloatingWindows;
class LyricsModel;
class StatusBar;
class UserDefaults;
class WidgetManager;

/// The widget on the screen: a small card that shows what plays, wherever the user has put it. It is moved by
/// its background and sized by its edges, and keeps its frame in the settings, "pellar.widget.frame".
class WidgetWindow : public QQuickView
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(WidgetLayout layout READ layout NOTIFY layoutChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius CONSTANT)

public:
    /// What the widget builds on. Everything outlives it.
    struct Dependencies {
        WidgetManager& manager;
        UserDefaults& defaults;
        FloatingWindows& windows;
        StatusBar& bar;
        LyricsModel& lyrics;
        TrackModel::Dependencies track;
    };

    explicit WidgetWindow(const Dependencies& dependencies);
    ~WidgetWindow() override;

    /// Puts it on the screen where it was last.
    void present();

    WidgetLayout layout() const { return _layout; }
    double cornerRadius() const;

    /// The ways of the left button on the background, in points from the card's corner.
    Q_INVOKABLE void press(QPointF point);
    Q_INVOKABLE void drag();
    Q_INVOKABLE void release();
    /// The pointer is over a button, or not any more.
    Q_INVOKABLE void setOverButton(bool isOver);
    /// The cursor that tells what a press does there.
    Q_INVOKABLE Qt::CursorShape cursorAt(QPointF point) const;

Q_SIGNALS:
    void layoutChanged();

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    /// A drag on the background.
    struct Drag {
        Qt::Edges edges; ///< none to move the whole
        QPointF start;   ///< of the pointer, on the screen
        QRectF frame;    ///< of the widget, then
        bool hasBegun = false;
    };

    std::optional<QRectF> savedFrame() const;
    QRectF firstFrame() const;
    QRectF wantedFrame();
    void keepFrameSoon();
    void keepPendingFrame(const QRectF& frame);
    void place(const QRectF& frame);
    void followScreens();
    void watchScreen(QScreen* screen);
    void fit();
    void resetPosition();
    void cutCorners();
    static QRectF dragged(const Drag& drag, QPointF way);

    Dependencies _of;
    TrackModel _track;
    std::optional<Drag> _drag;
    QPointF _pointer;          ///< on the screen
    bool _isDisplaced = false; ///< it lies elsewhere than it was put, whose screen has gone
    std::unique_ptr<RunLoop::Timer> _animation;
    std::unique_ptr<RunLoop::Timer> _keeping; ///< while the frame has to be written
    QProperty<QSizeF> _size;
    QProperty<WidgetElements> _elements;
    QPropertyNotifier _elementsWatch;
    QPropertyNotifier _onTopWatch;
    Q_OBJECT_BINDABLE_PROPERTY(WidgetWindow, WidgetLayout, _layout, &WidgetWindow::layoutChanged)
};
