#pragma once

#include <QList>
#include <QString>

/// A device that sound can be played on.
struct AudioOutputDevice {
    quint32 id = 0; ///< valid as long as the device is there
    QString name;   ///< for people
    QString uid;    ///< the same whenever the device comes back

    friend bool operator==(const AudioOutputDevice&, const AudioOutputDevice&) = default;
};
