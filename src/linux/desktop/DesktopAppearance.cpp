#include "linux/desktop/DesktopAppearance.h"

#include "base/RunLoop.h"
#include "linux/dbus/DBusValue.h"
#include "linux/dbus/WhenAnswered.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace {

const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colourSchemeKey = QStringLiteral("color-scheme");

// The portal's colour schemes; 0 stands for no preference.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

} // namespace

DesktopAppearance::DesktopAppearance(RunLoop& runLoop)
    : _runLoop(runLoop)
    , _portalName(QDBusConnection::sessionBus(), QStringLiteral("org.freedesktop.portal.Desktop"))
{
    qGuiApp->installEventFilter(this);
    QDBusConnection::sessionBus().connect(
        QString(), portalPath, QLatin1String(PortalSettingsProxy::staticInterfaceName()),
        QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QDBusMessage)));
    connect(&_portalName, &BusName::ownerChanged, this, &DesktopAppearance::setPortal);
    _portalName.start();
}

/// What a portal said holds until the next one says something else.
void DesktopAppearance::setPortal(const QString& owner)
{
    _portal.reset();
    if (owner.isEmpty()) {
        return;
    }
    _portal = std::make_unique<PortalSettingsProxy>(owner, portalPath, QDBusConnection::sessionBus());
    _backoff.reset();
    askPortal();
}

/// The portal may have taken its name before it can answer.
void DesktopAppearance::askPortal()
{
    whenAnswered(_portal->Read(appearanceGroup, colourSchemeKey), _portal.get(),
                 [this](const QDBusPendingReply<QDBusVariant>& reply) {
                     if (reply.isValid()) {
                         adopt(DBusValue::unwrapped(reply.value().variant()));
                     } else if (const auto delay = _backoff.next()) {
                         _runLoop.after(*delay, _portal.get(), [this] { askPortal(); });
                     }
                 });
}

bool DesktopAppearance::isDark() const
{
    constexpr int middle = 128;
    return _portalIsDark.value_or(QGuiApplication::palette().color(QPalette::Window).lightness() < middle);
}

void DesktopAppearance::settingChanged(const QDBusMessage& signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.value(0) == appearanceGroup && arguments.value(1) == colourSchemeKey) {
        adopt(DBusValue::unwrapped(arguments.value(2)));
    }
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qGuiApp) {
        Q_EMIT changed();
    }
    return Appearance::eventFilter(watched, event);
}

void DesktopAppearance::adopt(const QVariant& colourScheme)
{
    const uint scheme = colourScheme.toUInt();
    _portalIsDark =
        scheme == preferDark || scheme == preferLight ? std::optional(scheme == preferDark) : std::nullopt;
    Q_EMIT changed();
}
