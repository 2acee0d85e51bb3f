#pragma once

#include <QObject>

/// The system's low-power switch.
class PowerState : public QObject
{
    Q_OBJECT

public:
    /// False also when the system has no such switch.
    virtual bool isLowPowerModeEnabled() const = 0;

Q_SIGNALS:
    void changed();
};
