#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/mpris/MprisApplication.h"

#include <QHash>

namespace {

/// The applications that scripts can address, by name in lower case.
Interpreter::Applications scriptedApplications(PlayerRoster& roster)
{
    const QHash<QString, std::shared_ptr<ScriptObject>> applications = {
        {QStringLiteral("music"), std::make_shared<MprisApplication>(roster, PlayerRole::music)},
        {QStringLiteral("spotify"), std::make_shared<MprisApplication>(roster, PlayerRole::spotify)},
    };
    return [applications](const QString& name) { return applications.value(name); };
}

} // namespace

LinuxPlatform::LinuxPlatform(const UserDefaults& defaults)
    : _bus(_runLoop)
    , _roster(_bus, defaults)
    , _notifier(_roster, _distributedNotifications)
    , _workspace(_roster)
    , _automation(_roster)
    , _interpreter(scriptedApplications(_roster))
    , _power(QDBusConnection::systemBus())
    , _ports{.runLoop = _runLoop,
             .scripts = _interpreter,
             .automation = _automation,
             .workspace = _workspace,
             .power = _power,
             .pasteboard = _pasteboard,
             .statusBar = _statusBar,
             .audioHardware = _audioHardware,
             .distributedNotifications = _distributedNotifications,
             .notifications = _notifications}
{
}
