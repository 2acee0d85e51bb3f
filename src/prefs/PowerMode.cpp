#include "prefs/PowerMode.h"

namespace {

struct Entry {
    PowerMode mode;
    const char* id;
    const char* displayName;
    const char* summary;
};

// In the order of the cases.
constexpr Entry entries[] = {
    {PowerMode::lowPower, "lowPower", "Low Power", "Maximum battery life. Visualizer off, slow refresh."},
    {PowerMode::normal, "normal", "Normal", "Balanced. Visualizer at a sensible refresh rate."},
    {PowerMode::powerUser, "powerUser", "Power User", "Smoothest visuals. Highest refresh, fastest sync."},
};

const Entry& entry(PowerMode mode)
{
    return entries[static_cast<size_t>(mode)];
}

} // namespace

const QList<PowerMode>& allPowerModes()
{
    static const QList<PowerMode> modes = [] {
        QList<PowerMode> result;
        for (const Entry& entry : entries) {
            result.append(entry.mode);
        }
        return result;
    }();
    return modes;
}

QString id(PowerMode mode)
{
    return QLatin1String(entry(mode).id);
}

QString displayName(PowerMode mode)
{
    return QLatin1String(entry(mode).displayName);
}

QString summary(PowerMode mode)
{
    return QLatin1String(entry(mode).summary);
}

std::optional<PowerMode> powerModeWithId(const QString& id)
{
    for (const Entry& entry : entries) {
        if (id == QLatin1String(entry.id)) {
            return entry.mode;
        }
    }
    return std::nullopt;
}
