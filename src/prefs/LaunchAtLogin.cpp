#include "prefs/LaunchAtLogin.h"

#include "base/DebugLog.h"
#include "platform/LoginItem.h"
#include "platform/Platform.h"

LaunchAtLogin& LaunchAtLogin::shared()
{
    static auto* const instance = new LaunchAtLogin(Platform::current().loginItem);
    return *instance;
}

bool LaunchAtLogin::isEnabled() const
{
    return _item.isEnabled();
}

void LaunchAtLogin::setEnabled(bool isEnabled)
{
    if (const auto failure = _item.setEnabled(isEnabled)) {
        dlog(QStringLiteral("LaunchAtLogin: failed to %1 login item – %2")
                 .arg(isEnabled ? QStringLiteral("enable") : QStringLiteral("disable"), *failure));
    }
    Q_EMIT isEnabledChanged();
}
