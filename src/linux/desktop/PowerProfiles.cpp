#include "linux/desktop/PowerProfiles.h"

#include "linux/desktop/PowerProfilesDaemon.h"

#include <algorithm>

PowerProfiles::PowerProfiles(const QDBusConnection& bus, RunLoop& runLoop)
    : _daemons{std::make_unique<PowerProfilesDaemon>(bus, runLoop,
                                                     QStringLiteral("org.freedesktop.UPower.PowerProfiles"),
                                                     QStringLiteral("/org/freedesktop/UPower/PowerProfiles")),
               std::make_unique<PowerProfilesDaemon>(bus, runLoop, QStringLiteral("net.hadess.PowerProfiles"),
                                                     QStringLiteral("/net/hadess/PowerProfiles"))}
{
    for (const auto& daemon : _daemons) {
        connect(daemon.get(), &PowerProfilesDaemon::changed, this, &PowerProfiles::update);
    }
}

PowerProfiles::~PowerProfiles() = default;

/// A current daemon has both names at once.
void PowerProfiles::update()
{
    const bool isLowPower = std::any_of(_daemons.begin(), _daemons.end(),
                                        [](const auto& daemon) { return daemon->isPowerSaver(); });
    if (isLowPower != _isLowPower) {
        _isLowPower = isLowPower;
        Q_EMIT changed();
    }
}
