#include "app/TrayIcon.h"

#include "audio/AwaitedPlayer.h"
#include "base/RunLoop.h"
#include "engine/NowPlayingService.h"
#include "ui/controls/Symbol.h"
#include "ui/pill/PillColors.h"

#include <QPainter>
#include <QPixmap>

namespace {

/// The play symbol on a small pill, so that it can be told on a light panel and on a dark one.
QIcon pillIcon()
{
    const PillColors colors = PillColors::forDesktop(true);
    QIcon icon;
    for (const int side : {16, 22, 32, 48}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.background);
        painter.drawRoundedRect(QRectF(0, 0, side, side), side / 4.0, side / 4.0);
        const double symbol = side * 0.6;
        painter.translate((side - symbol) / 2, (side - symbol) / 2);
        painter.fillPath(symbolOutline(QStringLiteral("play.fill"), symbol), colors.text);
        icon.addPixmap(picture);
    }
    return icon;
}

} // namespace

TrayIcon::TrayIcon(const NowPlayingService& service, const AwaitedPlayer& awaited, RunLoop& runLoop,
                   std::function<void(ClassicMenu&)> fillMenu)
    : _service(service)
    , _awaited(awaited)
    , _runLoop(runLoop)
    , _fillMenu(std::move(fillMenu))
    , _icon(pillIcon())
{
    connect(&_menu, &QMenu::aboutToShow, this, [this] {
        _isOpen = true;
        fill();
    });
    connect(&_menu, &QMenu::aboutToHide, this, [this] {
        _isOpen = false;
        if (_isStale) {
            trackChanged();
        }
    });
    _icon.setContextMenu(&_menu);
    connect(&_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            Q_EMIT clicked();
        }
    });
    connect(&_service, &NowPlayingService::titleChanged, this, &TrayIcon::trackChanged);
    connect(&_service, &NowPlayingService::artistChanged, this, &TrayIcon::trackChanged);
    connect(&_awaited, &AwaitedPlayer::nameChanged, this, &TrayIcon::describe);
    fill();
    describe();
    _icon.show();
}

/// A new track changes several things one after the other; all of them are known when this turn is over.
void TrayIcon::trackChanged()
{
    if (_isQueued) {
        return;
    }
    _isQueued = true;
    _runLoop.after(0, this, [this] {
        _isQueued = false;
        describe();
        _isStale = true;
        if (!_isOpen) {
            fill();
        }
    });
}

void TrayIcon::fill()
{
    _isStale = false;
    _fillMenu(_menu);
}

void TrayIcon::describe()
{
    QStringList parts = {_service.title(), _service.artist()};
    if (const QString awaited = _awaited.name(); !awaited.isEmpty()) {
        parts << QStringLiteral("waiting for %1").arg(awaited);
    }
    parts.removeAll(QString());
    _icon.setToolTip(parts.join(QStringLiteral(" — ")));
}
