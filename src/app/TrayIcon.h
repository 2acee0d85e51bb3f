#pragma once

#include "ui/menu/ClassicMenu.h"

#include <QObject>
#include <QSystemTrayIcon>

#include <functional>

class AwaitedPlayer;
class NowPlayingService;

/// An icon in the desktop's tray, for desktops whose panel covers the status item: a click brings the item to
/// the front, and the menu is the item's own. Where there is no tray there is no icon.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// `fillMenu` puts the rows of the context menu into a menu; it is asked each time the menu opens.
    TrayIcon(const NowPlayingService& service, const AwaitedPlayer& awaited,
             std::function<void(ClassicMenu&)> fillMenu);

Q_SIGNALS:
    void clicked();

private:
    void describe();

    const NowPlayingService& _service;
    const AwaitedPlayer& _awaited;
    std::function<void(ClassicMenu&)> _fillMenu;
    ClassicMenu _menu;
    QSystemTrayIcon _icon;
};
