#pragma once

#include <QColor>
#include <QObject>
#include <QRect>

class QScreen;
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
    StatusItem(StatusBar& bar, UserDefaults& defaults, const QString& autosaveName, double length);
    ~StatusItem() override;

    /// Puts the view on screen.
    void setView(StatusHostingView* view);

    /// The item's width, in points. Its right edge stays where it is.
    void setLength(double length);

    /// Where windows are not blended, pixels beyond this radius of the view's corners are cut off, and this
    /// colour is behind the smooth edges of what is left.
    void setCorners(double radius, const QColor& background);

private:
    void moveBy(int dx);
    void savePlace();
    void followScreen(QScreen* screen);
    void place();
    void cutCorners();

    StatusBar& _bar;
    UserDefaults& _defaults;
    QString _placeKey;
    double _rightInset;
    double _length;
    double _cornerRadius = 0;
    QColor _background = Qt::transparent;
    StatusHostingView* _view = nullptr;
};
