#include "prefs/WidgetManager.h"

WidgetManager& WidgetManager::shared()
{
    static auto* const instance = new WidgetManager(UserDefaults::standard());
    return *instance;
}

void WidgetManager::resetPosition()
{
    _defaults.removeObject(QStringLiteral("pellar.widget.frame"));
    Q_EMIT positionReset();
}
