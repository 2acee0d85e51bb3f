#include "ui/settings/SettingsModel.h"

#include "audio/AudioBridge.h"
#include "platform/Workspace.h"
#include "prefs/KeyboardShortcutManager.h"
#include "prefs/MenuStyleManager.h"
#include "prefs/ServiceAddresses.h"
#include "prefs/ThemeManager.h"

#include <QCoreApplication>
#include <QUrl>

namespace {

/// The menu style's two cases stand in the order in which they are explained, not in that of the enumeration.
constexpr std::array menuStyles = {PellarMenuStyle::classic, PellarMenuStyle::liquidGlass};

} // namespace

SettingsModel::SettingsModel(Dependencies dependencies)
    : _of(std::move(dependencies))
    , _theme(_of.theme.mode)
    , _menuStyle(
          [] {
              return QStringList{displayName(menuStyles[0]), displayName(menuStyles[1])};
          },
          [this] { return _of.menuStyle.style == menuStyles[0] ? 0 : 1; },
          [this](int index) { _of.menuStyle.style = menuStyles.at(static_cast<std::size_t>(index)); })
    , _recorder(_of.shortcuts)
{
    for (const auto& [shortcut, id, name] : Choices<PellarShortcut>::all) {
        _shortcuts.push_back(std::make_unique<ShortcutSetting>(shortcut, _of.shortcuts, _recorder));
    }
    _isCaptureEnabled.setBinding([this] { return _of.audio.isEnabled(); });
}

void SettingsModel::setTab(int tab)
{
    _recorder.cancel();
    _tab = tab;
}

QStringList SettingsModel::tabNames() const
{
    QStringList names;
    for (const auto& [tab, id, name] : Choices<SettingsTab>::all) {
        names << displayName(tab);
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

bool SettingsModel::hasUsagePing() const
{
    return !_of.addresses.usagePing.isEmpty();
}

QVariantList SettingsModel::shortcuts() const
{
    QVariantList settings;
    for (const auto& setting : _shortcuts) {
        settings << QVariant::fromValue(setting.get());
    }
    return settings;
}

void SettingsModel::resetShortcuts()
{
    _recorder.cancel();
    _of.shortcuts.manager.resetToDefaults();
}

QString SettingsModel::version() const
{
    return QStringLiteral("%1 (%2)").arg(QCoreApplication::applicationVersion(),
                                         QStringLiteral(PELLAR_BUILD));
}

QString SettingsModel::webSite() const
{
    return _of.addresses.webSite;
}

QString SettingsModel::support() const
{
    return _of.addresses.support;
}

void SettingsModel::open(const QString& address)
{
    _of.workspace.open(QUrl(address));
}
