#include "prefs/PowerModeManager.h"

#include "platform/Platform.h"
#include "platform/PowerState.h"
#include "platform/UserDefaults.h"

#include <QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(powerModeLog, "com.orvalen.pellar.power")

PowerModeTable storedSettings(const UserDefaults& defaults)
{
    const auto json = defaults.data(PowerModeManager::kSettingsKey);
    const auto stored = json ? decodePowerModes(*json) : std::nullopt;
    if (json && !stored) {
        qCWarning(powerModeLog) << "the stored power mode settings cannot be read; the defaults apply";
    }
    PowerModeTable table = stored.value_or(PowerModeTable());
    for (const PowerMode mode : allPowerModes()) {
        if (!table.contains(id(mode))) {
            table.insert(id(mode), PowerModeSettings::defaults(mode));
        }
    }
    return table;
}

} // namespace

const QString PowerModeManager::kManualMode = QStringLiteral("com.orvalen.pellar.power.manualMode");
const QString PowerModeManager::kSettingsKey = QStringLiteral("com.orvalen.pellar.power.settings.v1");

PowerModeManager::PowerModeManager(UserDefaults& defaults, PowerState& power) : _defaults(defaults)
{
    _manualMode =
        powerModeWithId(defaults.string(kManualMode).value_or(QString())).value_or(PowerMode::normal);
    _settings = storedSettings(defaults);
    _systemLowPowerEnabled = power.isLowPowerModeEnabled();
    connect(&power, &PowerState::changed, this,
            [this, &power] { _systemLowPowerEnabled = power.isLowPowerModeEnabled(); });
}

PowerModeManager& PowerModeManager::shared()
{
    static auto* const instance = new PowerModeManager(UserDefaults::standard(), Platform::current().power);
    return *instance;
}

void PowerModeManager::setManualMode(PowerMode mode)
{
    _defaults.setObject(kManualMode, id(mode));
    _manualMode = mode;
}

PowerMode PowerModeManager::effectiveMode() const
{
    return _systemLowPowerEnabled ? PowerMode::lowPower : _manualMode.value();
}

PowerModeSettings PowerModeManager::effectiveSettings() const
{
    return settingsOf(effectiveMode());
}

void PowerModeManager::updateSettings(PowerMode mode, const std::function<void(PowerModeSettings&)>& change)
{
    PowerModeSettings settings = settingsOf(mode);
    change(settings);
    setSettings(mode, settings);
}

void PowerModeManager::resetToDefaults(PowerMode mode)
{
    setSettings(mode, PowerModeSettings::defaults(mode));
}

PowerModeSettings PowerModeManager::settingsOf(PowerMode mode) const
{
    return settings().value(id(mode), PowerModeSettings::defaults(mode));
}

void PowerModeManager::setSettings(PowerMode mode, const PowerModeSettings& settings)
{
    PowerModeTable table = _settings;
    table.insert(id(mode), settings);
    _defaults.setObject(kSettingsKey, encodePowerModes(table));
    _settings = table;
}
