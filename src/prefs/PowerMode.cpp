#include "prefs/PowerMode.h"

QString summary(PowerMode mode)
{
    switch (mode) {
    case PowerMode::lowPower:
        return QStringLiteral("Maximum battery life. Visualizer off, slow refresh.");
    case PowerMode::powerUser:
        return QStringLiteral("Smoothest visuals. Highest refresh, fastest sync.");
    case PowerMode::normal:
        break;
    }
    return QStringLiteral("Balanced. Visualizer at a sensible refresh rate.");
}
