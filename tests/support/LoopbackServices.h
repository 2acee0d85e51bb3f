#pragma once

#include "linux/settings/PlistUserDefaults.h"

/// Has a program that is started after this look for web services where nobody listens. For a desktop of the
/// test's own only: it writes the settings file of the user.
inline void keepServicesToLoopback()
{
    PlistUserDefaults(PlistUserDefaults::defaultPath())
        .setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                   QStringLiteral("http://127.0.0.1:1"));
}
