#pragma once

#include "prefs/PowerModeSettings.h"

#include <QObject>
#include <QProperty>

#include <functional>

class PowerState;
class UserDefaults;

/// The power mode that the user picked, the settings of every mode, and which of them are in force: while the
/// system saves power, the lowest mode is, whatever the user picked.
class PowerModeManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(PowerMode manualMode READ manualMode WRITE setManualMode NOTIFY manualModeChanged BINDABLE
                   bindableManualMode)
    Q_PROPERTY(PowerModeTable settings READ settings NOTIFY settingsChanged BINDABLE bindableSettings)
    Q_PROPERTY(bool systemLowPowerEnabled READ systemLowPowerEnabled NOTIFY systemLowPowerEnabledChanged
                   BINDABLE bindableSystemLowPowerEnabled)

public:
    static const QString kManualMode;
    static const QString kSettingsKey;

    PowerModeManager(UserDefaults& defaults, PowerState& power);
    static PowerModeManager& shared();

    PowerMode manualMode() const { return _manualMode; }
    void setManualMode(PowerMode mode);
    QBindable<PowerMode> bindableManualMode() const { return &_manualMode; }

    /// All three modes, and what else was stored.
    PowerModeTable settings() const { return _settings.value(); }
    QBindable<PowerModeTable> bindableSettings() const { return &_settings; }

    bool systemLowPowerEnabled() const { return _systemLowPowerEnabled; }
    QBindable<bool> bindableSystemLowPowerEnabled() const { return &_systemLowPowerEnabled; }

    PowerMode effectiveMode() const;
    PowerModeSettings effectiveSettings() const;
    bool audioCaptureAllowed() const { return effectiveSettings().visualizerEnabled; }

    /// Applies a change to the settings of one mode, in force or not, and stores them.
    void updateSettings(PowerMode mode, const std::function<void(PowerModeSettings&)>& change);
    void resetToDefaults(PowerMode mode);

Q_SIGNALS:
    void manualModeChanged();
    void settingsChanged();
    void systemLowPowerEnabledChanged();

private:
    PowerModeSettings settingsOf(PowerMode mode) const;
    void setSettings(PowerMode mode, const PowerModeSettings& settings);

    UserDefaults& _defaults;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PowerModeManager, PowerMode, _manualMode, PowerMode::normal,
                                         &PowerModeManager::manualModeChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PowerModeManager, PowerModeTable, _settings,
                               &PowerModeManager::settingsChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PowerModeManager, bool, _systemLowPowerEnabled, false,
                                         &PowerModeManager::systemLowPowerEnabledChanged)
};
