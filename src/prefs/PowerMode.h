#pragma once

#include <QList>
#include <QString>

#include <optional>

/// How the user trades smoothness for energy.
enum class PowerMode { lowPower, normal, powerUser };

/// Every mode, in the order in which menus list them.
const QList<PowerMode>& allPowerModes();

/// The form in which a mode is stored.
QString id(PowerMode mode);
QString displayName(PowerMode mode);
QString summary(PowerMode mode);

/// The mode with this identifier; none for an unknown text.
std::optional<PowerMode> powerModeWithId(const QString& id);
