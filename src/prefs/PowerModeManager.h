#pragma once

#include "prefs/PowerModeSettings.h"
#include "prefs/Preference.h"

#include <QObject>

#include <functional>

class PowerState;

/// The power mode that the user picked, the settings of every mode, and which of them are in force: while the
/// system saves power, the lowest mode is, whatever the user picked.
class PowerModeManager : public QObject
{
    Q_OBJECT

public:
    static const QString kManualMode;
    static const QString kSettingsKey;

    PowerModeManager(UserDefaults& defaults, PowerState& power);
    static PowerModeManager& shared();

    /// What the user picked.
    Preference<PowerMode> manualMode;

    bool systemLowPowerEnabled() const { return _systemLowPowerEnabled; }

    PowerModeSettings settings(PowerMode mode) const;

    PowerMode effectiveMode() const;
    PowerModeSettings effectiveSettings() const;
    bool audioCaptureAllowed() const { return effectiveSettings().visualizerEnabled; }

    /// Applies a change to the settings of one mode, in force or not, and stores them.
    void updateSettings(PowerMode mode, const std::function<void(PowerModeSettings&)>& change);
    void resetToDefaults(PowerMode mode);

private:
    void setSettings(PowerMode mode, const PowerModeSettings& settings);

    Preference<PowerModeTable> _settings; ///< all three modes, and what else was stored
    QProperty<bool> _systemLowPowerEnabled;
};
