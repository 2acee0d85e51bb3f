#pragma once

#include "prefs/PowerModeSettings.h"
#include "ui/settings/ChoiceSetting.h"

class PowerModeManager;

/// What the power mode window shows and sets: the settings of one mode at a time, in force or not.
class PowerModeModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(ChoiceSetting* mode READ mode CONSTANT)
    Q_PROPERTY(int effectiveMode READ effectiveMode NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool isSystemLowPower READ isSystemLowPower NOTIFY changed)
    Q_PROPERTY(bool isVisualizerEnabled READ isVisualizerEnabled NOTIFY changed)
    Q_PROPERTY(ChoiceSetting* visualizerRate READ visualizerRate CONSTANT)
    Q_PROPERTY(ChoiceSetting* driftRefresh READ driftRefresh CONSTANT)

public:
    /// The manager outlives the model.
    explicit PowerModeModel(PowerModeManager& power);

    /// Which mode is shown; the one in force at first.
    ChoiceSetting* mode() { return &_shownMode; }
    int effectiveMode() const;
    /// What the shown mode is for.
    QString summary() const;
    bool isSystemLowPower() const { return _isSystemLowPower; }

    bool isVisualizerEnabled() const { return _settings.value().visualizerEnabled; }
    Q_INVOKABLE void setVisualizerEnabled(bool enabled);
    /// Frames per second. A stored number that is not offered is, as long as it is in force.
    ChoiceSetting* visualizerRate() { return &_visualizerRate; }
    /// Seconds; as above.
    ChoiceSetting* driftRefresh() { return &_driftRefresh; }
    Q_INVOKABLE void resetToDefaults();

Q_SIGNALS:
    void changed();

private:
    PowerMode shownMode() const { return static_cast<PowerMode>(_index.value()); }

    PowerModeManager& _power;
    QProperty<int> _index; ///< of the mode that is shown
    ChoiceSetting _shownMode;
    Q_OBJECT_BINDABLE_PROPERTY(PowerModeModel, PowerModeSettings, _settings, &PowerModeModel::changed)
    Q_OBJECT_BINDABLE_PROPERTY(PowerModeModel, PowerMode, _effectiveMode, &PowerModeModel::changed)
    Q_OBJECT_BINDABLE_PROPERTY(PowerModeModel, bool, _isSystemLowPower, &PowerModeModel::changed)
    ChoiceSetting _visualizerRate;
    ChoiceSetting _driftRefresh;
};
