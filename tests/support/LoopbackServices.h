#pragma once

#include "linux/settings/PlistUserDefaults.h"

/// Has a program that is started after this look for web services where nobody listens, and not begin with
/// its onboarding. For a desktop of the test's own only: it writes the settings file of the user.
inline void keepServicesToLoopback()
{
    PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
    defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                       QStringLiteral("http://127.0.0.1:1"));
    defaults.setObject(QStringLiteral("pellar_onboarding_complete"), true);
}
