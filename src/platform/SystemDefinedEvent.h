#pragma once

#include <QtGlobal>

/// An event of the system's own, such as a key of the keyboard's media row makes. It has no place, time or
/// window.
struct SystemDefinedEvent {
    static constexpr int type = 14;
    static constexpr int auxiliaryControl = 8; ///< the subtype of media keys

    int subtype = auxiliaryControl;
    quint32 modifierFlags = 0;
    qint32 data1 = 0; ///< of a media key: its code in the upper half, 0xA00 (down) or 0xB00 (up) in the lower
    qint32 data2 = 0;

    friend bool operator==(const SystemDefinedEvent&, const SystemDefinedEvent&) = default;
};
