#pragma once

#include "platform/PowerState.h"

#include <QDBusConnection>

#include <array>
#include <memory>

class PowerProfilesDaemon;
class RunLoop;

/// The power profile that the user picked for this computer, as power-profiles-daemon gives it under its
/// current or its older name: low power is the profile "power-saver". Never waits for the daemon; until it
/// has answered, and while it is not there, the answer is no.
class PowerProfiles final : public PowerState
{
    Q_OBJECT

public:
    /// `bus` is the system bus, outside tests.
    PowerProfiles(const QDBusConnection& bus, RunLoop& runLoop);
    ~PowerProfiles() override;

    bool isLowPowerModeEnabled() const override { return _isLowPower; }

private:
    void update();

    std::array<std::unique_ptr<PowerProfilesDaemon>, 2> _daemons;
    bool _isLowPower = false;
};
