#pragma once

#include <QString>
#include <QStringList>

/// While it lives, a display that cannot be had ends the program with one line and the code 1, where Qt would
/// print many and abort. What else is logged meanwhile comes out when it goes.
class DisplayGuard
{
public:
    DisplayGuard();
    ~DisplayGuard();
    DisplayGuard(const DisplayGuard&) = delete;
    DisplayGuard& operator=(const DisplayGuard&) = delete;
};
