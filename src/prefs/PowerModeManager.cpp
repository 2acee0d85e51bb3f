#include "prefs/PowerModeManager.h"

#include "platform/Platform.h"
#include "platform/PowerState.h"

const QString PowerModeManager::kManualMode = QStringLiteral("com.orvalen.pellar.power.manualMode");
const QString PowerModeManager::kSettingsKey = QStringLiteral("com.orvalen.pellar.power.settings.v1");

PowerModeManager::PowerModeManager(UserDefaults& defaults, PowerState& power)
    : manualMode(defaults, kManualMode, PowerMode::normal)
    , _settings(defaults, kSettingsKey, defaultPowerModes())
    , _systemLowPowerEnabled(power.isLowPowerModeEnabled())
{
    connect(&power, &PowerState::changed, this,
            [this, &power] { _systemLowPowerEnabled = power.isLowPowerModeEnabled(); });
}

PowerModeManager& PowerModeManager::shared()
{
    static auto* const instance = new PowerModeManager(UserDefaults::standard(), Platform::current().power);
    return *instance;
}

PowerMode PowerModeManager::effectiveMode() const
{
    return _systemLowPowerEnabled ? PowerMode::lowPower : manualMode.value();
}

PowerModeSettings PowerModeManager::effectiveSettings() const
{
    return settings(effectiveMode());
}

void PowerModeManager::updateSettings(PowerMode mode, const std::function<void(PowerModeSettings&)>& change)
{
    PowerModeSettings changed = settings(mode);
    change(changed);
    setSettings(mode, changed);
}

void PowerModeManager::resetToDefaults(PowerMode mode)
{
    setSettings(mode, PowerModeSettings::defaults(mode));
}

PowerModeSettings PowerModeManager::settings(PowerMode mode) const
{
    return _settings.value().value(rawValue(mode), PowerModeSettings::defaults(mode));
}

void PowerModeManager::setSettings(PowerMode mode, const PowerModeSettings& settings)
{
    PowerModeTable table = _settings;
    table.insert(rawValue(mode), settings);
    _settings = table;
}
