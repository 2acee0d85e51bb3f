#include "linux/desktop/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colourSchemeKey = QStringLiteral("color-scheme");

// The portal's colour schemes; 0 stands for no preference.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

QVariant innermost(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

DesktopAppearance::DesktopAppearance()
{
    qGuiApp->installEventFilter(this);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(QString(), portalPath, settings, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QDBusMessage)));
    auto* const portalWatcher =
        new QDBusServiceWatcher(portal, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(portalWatcher, &QDBusServiceWatcher::serviceRegistered, this, &DesktopAppearance::askPortal);
    askPortal();
}

void DesktopAppearance::askPortal()
{
    auto read = QDBusMessage::createMethodCall(portal, portalPath, settings, QStringLiteral("Read"));
    read.setArguments({appearanceGroup, colourSchemeKey});
    auto* const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        const QDBusMessage reply = call->reply();
        if (reply.type() == QDBusMessage::ReplyMessage) {
            adopt(innermost(reply.arguments().value(0)));
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
        adopt(innermost(arguments.value(2)));
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
