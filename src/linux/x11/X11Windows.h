#pragma once

#include <QString>

#include <xcb/xcb.h>

#include <optional>
#include <vector>

/// The windows of this desktop's programs, as the window manager lists them. Windows come and go at any time:
/// questions about one that is gone give nothing.
namespace X11Windows {

struct Description {
    xcb_window_t window = XCB_WINDOW_NONE;
    std::optional<qint64> processId;
    QString windowClass; ///< the class part of WM_CLASS in lower case; may be empty
};

/// The windows that the window manager manages, the topmost first; at most 1024. Two round trips.
std::vector<Description> managed();

/// The window that has the keyboard; XCB_WINDOW_NONE when there is none.
xcb_window_t active();

/// Asks the window manager to raise a window and to give it the keyboard, on behalf of the user.
void activate(xcb_window_t window);

} // namespace X11Windows
