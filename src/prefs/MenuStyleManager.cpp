#include "prefs/MenuStyleManager.h"

#include "platform/UserDefaults.h"

namespace {

const QString styleKey = QStringLiteral("pellar.menu.style");

} // namespace

MenuStyleManager::MenuStyleManager(UserDefaults& defaults) : _defaults(defaults)
{
    _style = menuStyle(defaults.string(styleKey).value_or(QString()));
}

MenuStyleManager& MenuStyleManager::shared()
{
    static auto* const instance = new MenuStyleManager(UserDefaults::standard());
    return *instance;
}

void MenuStyleManager::setStyle(PellarMenuStyle style)
{
    _defaults.setObject(styleKey, rawValue(style));
    _style = style;
}
