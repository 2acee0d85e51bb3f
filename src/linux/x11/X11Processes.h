#pragma once

#include "linux/x11/X11Windows.h"

/// The programs that show windows.
namespace X11Processes {

struct Process {
    std::optional<qint64> unixId; ///< as its windows tell; a sandboxed program may tell another number
    QString name;                 ///< the class of its windows
    std::optional<QString> bundleId;
    xcb_window_t window = XCB_WINDOW_NONE; ///< the active one of its windows, else the topmost
    bool isFrontmost = false;              ///< it has the active window
};

/// The one with the active window first, the others by their topmost window. Those whose windows tell neither
/// a process id nor a class are left out. Windows of one process id and different classes, such as a
/// browser's and those of the web applications that it runs, are different programs.
std::vector<Process> running();

/// The identifier that the program is known by elsewhere: of Spotify and of the browsers that there are for
/// Linux, whatever their edition. `windowClass` is in lower case.
std::optional<QString> bundleId(const QString& windowClass);

} // namespace X11Processes
