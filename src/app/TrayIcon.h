#pragma once

#include "ui/menu/ClassicMenu.h"

#include <QObject>
#include <QSystemTrayIcon>

#include <functional>

class AwaitedPlayer;
class NowPlayingService;
class RunLoop;

/// An icon in the desktop's tray, for desktops whose panel covers the status item: a click brings the item to
/// the front, and the menu is the item's own. Where there is no tray there is no icon.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// `fillMenu` puts the rows of the context menu into a menu; it is asked each time the menu opens, and
    /// once a track while it is closed, for panels that draw the menu as they have read it before.
    TrayIcon(const NowPlayingService& service, const AwaitedPlayer& awaited, RunLoop& runLoop,
             std::function<void(ClassicMenu&)> fillMenu);

    /// Has the menu filled again soon, or when it is closed.
    void refresh() { trackChanged(); }

Q_SIGNALS:
    void clicked();

private:
    void trackChanged();
    void fill();
    void describe();

    const NowPlayingService& _service;
    const AwaitedPlayer& _awaited;
    RunLoop& _runLoop;
    std::function<void(ClassicMenu&)> _fillMenu;
    ClassicMenu _menu;
    QSystemTrayIcon _icon;
    bool _isOpen = false;
    bool _isQueued = false; ///< what a new track brings is about to be shown
    bool _isStale = false;  ///< the track has changed since the menu was filled
};
