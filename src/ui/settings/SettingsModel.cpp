#include "ui/settings/SettingsModel.h"

#include "audio/AudioBridge.h"
#include "prefs/MenuStyleManager.h"
#include "prefs/ThemeManager.h"

#include <QCoreApplication>

namespace {

/// The menu style's two cases stand in the order in which they are explained, not in that of the enumeration.
constexpr std::array menuStyles = {PellarMenuStyle::classic, PellarMenuStyle::liquidGlass};

} // namespace

SettingsModel::SettingsModel(const Dependencies& dependencies)
    : _of(dependencies)
    , _theme(_of.theme.mode)
    , _menuStyle(
          [] {
              return QStringList{displayName(menuStyles[0]), displayName(menuStyles[1])};
          },
          [this] { return _of.menuStyle.style == menuStyles[0] ? 0 : 1; },
          [this](int index) { _of.menuStyle.style = menuStyles.at(static_cast<std::size_t>(index)); })
{
    _isCaptureEnabled.setBinding([this] { return _of.audio.isEnabled(); });
}

QStringList SettingsModel::tabNames() const
{
    QStringList names;
    for (const auto& [tab, id, name] : Choices<SettingsTab>::all) {
        names << QCoreApplication::translate("SettingsModel", name);
    }
    return names;
}

QList<QColor> SettingsModel::themeTints() const
{
    QList<QColor> tints;
    for (const auto& [theme, id, name] : Choices<PellarTheme>::all) {
        tints << staticTint(theme).value_or(Qt::transparent);
    }
    return tints;
}

void SettingsModel::setCaptureEnabled(bool enabled)
{
    _of.audio.setEnabled(enabled);
}

QString SettingsModel::version() const
{
    return QCoreApplication::applicationVersion();
}
