#pragma once

#include <QString>

#include <vector>
#include <xcb/xcb.h>

class QWindow;

/// What window managers are told of our windows. Nothing happens without an X server.
namespace X11WindowHints {

/// Whether the session is one of Wayland, with a window manager of its own mind.
bool isWaylandSession();

void setProperty(xcb_window_t window, const QString& name, xcb_atom_t type,
                 const std::vector<uint32_t>& values);

/// On a scaled screen Qt lets a window grow only in steps of a point, rounded to pixels, and the window
/// manager takes what is over off the window's edge. This allows every size.
void allowEverySize(xcb_window_t window);

/// The window's type by its name in the standard, "DOCK" say; in no task list and on every desktop.
void describe(const QWindow& window, const QString& type, bool isAbove);

} // namespace X11WindowHints
