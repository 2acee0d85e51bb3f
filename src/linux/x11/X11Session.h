#pragma once

#include <QString>

#include <xcb/xcb.h>

/// The X server that this program is shown on, over Qt's own connection.
namespace X11Session {

/// Null when the program runs on something else than X11.
xcb_connection_t* connection();

/// The window that covers the screen; XCB_WINDOW_NONE without a server.
xcb_window_t root();

/// The atom of a name; XCB_ATOM_NONE without a server. One round trip for each name, then from memory.
xcb_atom_t atom(const QString& name);

/// Whether key events can be sent to other programs.
bool hasXTest();

/// Whether a compositing manager runs, so that translucent windows are blended.
bool isComposited();

/// Has the server tell when a compositing manager comes or goes, by the event whose number is given; -1 when
/// it cannot.
int watchCompositing();

} // namespace X11Session
