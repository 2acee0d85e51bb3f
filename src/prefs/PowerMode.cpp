#include "prefs/PowerMode.h"

#include <QCoreApplication>

QString summary(PowerMode mode)
{
    switch (mode) {
    case PowerMode::lowPower:
        return QCoreApplication::translate("PowerMode",
                                           "Maximum battery life. Visualizer off, slow refresh.");
    case PowerMode::powerUser:
        return QCoreApplication::translate("PowerMode", "Smoothest visuals. Highest refresh, fastest sync.");
    case PowerMode::normal:
        break;
    }
    return QCoreApplication::translate("PowerMode", "Balanced. Visualizer at a sensible refresh rate.");
}
