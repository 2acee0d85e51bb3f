#include "app/TrayIcon.h"

#include "audio/AwaitedPlayer.h"
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

TrayIcon::TrayIcon(const NowPlayingService& service, const AwaitedPlayer& awaited,
                   std::function<void(ClassicMenu&)> fillMenu)
    : _service(service)
    , _awaited(awaited)
    , _fillMenu(std::move(fillMenu))
    , _icon(pillIcon())
{
    // Panels that draw the menu themselves may take it as it was before it is about to show.
    const auto fill = [this] { _fillMenu(_menu); };
    fill();
    connect(&_menu, &QMenu::aboutToShow, this, fill);
    connect(&_service, &NowPlayingService::titleChanged, this, fill);
    _icon.setContextMenu(&_menu);
    connect(&_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            Q_EMIT clicked();
        }
    });
    connect(&_service, &NowPlayingService::titleChanged, this, &TrayIcon::describe);
    connect(&_service, &NowPlayingService::artistChanged, this, &TrayIcon::describe);
    connect(&_awaited, &AwaitedPlayer::nameChanged, this, &TrayIcon::describe);
    describe();
    _icon.show();
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
