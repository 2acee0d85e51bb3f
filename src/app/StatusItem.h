#pragma once

#include <QColor>
#include <QObject>
#include <QProperty>
#include <QRect>

class QScreen;
class RunLoop;
class StatusBar;
class StatusHostingView;
class UserDefaults;

/// One place in the status bar: a window at the top of the screen that keeps where the user has put it.
class StatusItem : public QObject
{
    Q_OBJECT

public:
    /// `autosaveName` names the place in the settings: "pellar.statusItem.NAME.rightInset", a number of
    /// points.
    StatusItem(StatusBar& bar, UserDefaults& defaults, const QString& autosaveName);
    ~StatusItem() override;

    /// Puts the view on screen.
    void setView(StatusHostingView* view);

    /// Brings the item to the front of all, for some seconds also where something covers it, or it is hidden.
    void reveal(RunLoop& runLoop);

    /// The item's width, in points. Its right edge stays where it is.
    QBindable<double> bindableLength() { return &_length; }

    /// Where windows are not blended, what is beyond the corners is cut off, and the colour is behind the
    /// smooth edges of what is left.
    struct Corners {
        double radius = 0; ///< points
        QColor background = Qt::transparent;

        friend bool operator==(const Corners&, const Corners&) = default;
    };
    QBindable<Corners> bindableCorners() { return &_corners; }

private:
    void moveBy(int dx);
    void savePlace();
    double shownInset() const;
    QSize size() const;
    void followScreen(QScreen* screen);
    void place();
    void cutCorners();

    StatusBar& _bar;
    UserDefaults& _defaults;
    QString _placeKey;
    double _rightInset;
    bool _isDragged = false;
    bool _isRevealed = false;
    StatusHostingView* _view = nullptr;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(StatusItem, double, _length, 0, &StatusItem::place)
    Q_OBJECT_BINDABLE_PROPERTY(StatusItem, StatusItem::Corners, _corners, &StatusItem::cutCorners)
};
