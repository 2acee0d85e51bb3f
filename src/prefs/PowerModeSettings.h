#pragma once

#include "prefs/PowerMode.h"

#include <QMap>

#include <optional>

class QByteArray;

/// What one power mode allows.
struct PowerModeSettings {
    bool visualizerEnabled = false; ///< draw the visualizer; also permits live capture
    int visualizerFPS = 0;          ///< frames per second; 0 for no animation
    int driftRefreshSeconds = 0;    ///< between two checks of the players for missed updates

    static PowerModeSettings defaults(PowerMode mode);

    friend bool operator==(const PowerModeSettings&, const PowerModeSettings&) = default;
};

/// Settings by the identifier of their mode.
using PowerModeTable = QMap<QString, PowerModeSettings>;

/// As a JSON object of objects with the field names above.
QByteArray encodePowerModes(const PowerModeTable& table);

/// None when anything in the JSON is missing or has another type. Numbers come as they are, negative ones
/// too.
std::optional<PowerModeTable> decodePowerModes(const QByteArray& json);
