#include "ui/settings/PowerModeModel.h"

#include "prefs/PowerModeManager.h"

#include <algorithm>

namespace {

const QList<int> rates = {0, 5, 10, 15, 20, 30, 60};      // frames per second
const QList<int> intervals = {2, 5, 10, 15, 30, 60, 120}; // seconds

/// The numbers to choose from, with the one in force among them.
QList<int> offered(QList<int> numbers, int current)
{
    const auto place = std::lower_bound(numbers.begin(), numbers.end(), current);
    if (place == numbers.end() || *place != current) {
        numbers.insert(place, current);
    }
    return numbers;
}

QStringList texts(const QList<int>& numbers, const QString& text)
{
    QStringList texts;
    for (const int number : numbers) {
        texts << text.arg(number);
    }
    return texts;
}

} // namespace

PowerModeModel::PowerModeModel(PowerModeManager& power)
    : _power(power)
    , _index(static_cast<int>(power.effectiveMode()))
    , _shownMode(
          [] {
              QStringList names;
              for (const auto& [mode, id, name] : Choices<PowerMode>::all) {
                  names << displayName(mode);
              }
              return names;
          },
          [this] { return _index.value(); }, [this](int index) { _index = index; })
    , _visualizerRate([this] { return texts(offered(rates, _settings.value().visualizerFPS), tr("%1 fps")); },
                      [this] {
                          const int rate = _settings.value().visualizerFPS;
                          return static_cast<int>(offered(rates, rate).indexOf(rate));
                      },
                      [this](int index) {
                          _power.updateSettings(shownMode(), [index](PowerModeSettings& settings) {
                              settings.visualizerFPS = offered(rates, settings.visualizerFPS)[index];
                          });
                      })
    , _driftRefresh(
          [this] {
              return texts(offered(intervals, _settings.value().driftRefreshSeconds), tr("%1 seconds"));
          },
          [this] {
              const int seconds = _settings.value().driftRefreshSeconds;
              return static_cast<int>(offered(intervals, seconds).indexOf(seconds));
          },
          [this](int index) {
              _power.updateSettings(shownMode(), [index](PowerModeSettings& settings) {
                  settings.driftRefreshSeconds = offered(intervals, settings.driftRefreshSeconds)[index];
              });
          })
{
    _settings.setBinding([this] { return _power.settings(shownMode()); });
    _effectiveMode.setBinding([this] { return _power.effectiveMode(); });
    _isSystemLowPower.setBinding([this] { return _power.systemLowPowerEnabled(); });
}

int PowerModeModel::effectiveMode() const
{
    return static_cast<int>(_effectiveMode.value());
}

QString PowerModeModel::summary() const
{
    return ::summary(shownMode());
}

void PowerModeModel::setVisualizerEnabled(bool enabled)
{
    _power.updateSettings(shownMode(),
                          [enabled](PowerModeSettings& settings) { settings.visualizerEnabled = enabled; });
}

void PowerModeModel::resetToDefaults()
{
    _power.resetToDefaults(shownMode());
}
