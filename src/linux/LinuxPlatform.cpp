#include "linux/LinuxPlatform.h"

#include "linux/desktop/PortalHotKeys.h"
#include "linux/mpris/MprisApplication.h"
#include "linux/x11/SystemEvents.h"
#include "linux/x11/X11HotKeys.h"
#include "linux/x11/X11Session.h"
#include "linux/x11/X11WindowHints.h"

#include <QCoreApplication>
#include <QHash>

namespace {

/// The applications that scripts can address, by name in lower case.
Interpreter::Applications scriptedApplications(PlayerRoster& roster, RunLoop& runLoop)
{
    QHash<QString, std::shared_ptr<ScriptObject>> applications = {
        {QStringLiteral("music"), std::make_shared<MprisApplication>(roster, PlayerRole::music)},
        {QStringLiteral("spotify"), std::make_shared<MprisApplication>(roster, PlayerRole::spotify)},
    };
    if (X11Session::connection() != nullptr) {
        applications.insert(QStringLiteral("system events"), std::make_shared<SystemEvents>(runLoop));
    }
    return [applications](const QString& name) { return applications.value(name); };
}

/// The X server's grabs reach no further than its own windows where it is a guest.
std::unique_ptr<HotKeys> hotKeys()
{
    if (X11WindowHints::isWaylandSession()) {
        return std::make_unique<PortalHotKeys>();
    }
    return std::make_unique<X11HotKeys>();
}

} // namespace

LinuxPlatform::LinuxPlatform(const PlayerCasting& casting)
    : _bus(_runLoop)
    , _roster(_bus, casting)
    , _notifier(_roster, _distributedNotifications)
    , _workspace(_roster)
    , _automation(_roster)
    , _interpreter(scriptedApplications(_roster, _runLoop))
    , _power(QDBusConnection::systemBus(), _runLoop)
    , _appearance(_runLoop)
    , _hotKeys(hotKeys())
    , _loginItem(QCoreApplication::applicationFilePath())
    , _keyring(_runLoop)
    , _statusBar(_runLoop)
    , _ports{.runLoop = _runLoop,
             .scripts = _interpreter,
             .automation = _automation,
             .workspace = _workspace,
             .power = _power,
             .pasteboard = _pasteboard,
             .keychain = _keyring,
             .statusBar = _statusBar,
             .floatingWindows = _floatingWindows,
             .appearance = _appearance,
             .audioHardware = _audioHardware,
             .eventTaps = _eventTaps,
             .mediaPlayers = _roster,
             .haptics = _haptics,
             .hotKeys = *_hotKeys,
             .loginItem = _loginItem,
             .remoteRequests = _remoteRequests,
             .distributedNotifications = _distributedNotifications,
             .notifications = _notifications}
{
}
