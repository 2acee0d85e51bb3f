#pragma once

#include "prefs/PowerMode.h"
#include "prefs/StoredForm.h"

#include <QMap>

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

/// The defaults of all modes.
PowerModeTable defaultPowerModes();

/// Stored as a JSON object of objects with the field names above. It cannot be read when anything in it is
/// missing or has another type; a mode that is not in it has its defaults. Numbers come as they are, negative
/// ones too.
template<>
struct StoredForm<PowerModeTable> {
    static QVariant of(const PowerModeTable& table);
    static std::optional<PowerModeTable> read(const QVariant& stored);
};
