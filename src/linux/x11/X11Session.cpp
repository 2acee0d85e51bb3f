#include "linux/x11/X11Session.h"

#include "linux/x11/X11Reply.h"

#include <QGuiApplication>
#include <QHash>

#include <xcb/xfixes.h>
#include <xcb/xtest.h>

xcb_connection_t* X11Session::connection()
{
    const auto* const native =
        qGuiApp != nullptr ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return native != nullptr ? native->connection() : nullptr;
}

xcb_window_t X11Session::root()
{
    xcb_connection_t* const server = connection();
    const auto screens =
        server != nullptr ? xcb_setup_roots_iterator(xcb_get_setup(server)) : xcb_screen_iterator_t{};
    return screens.rem > 0 ? screens.data->root : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_atom_t X11Session::atom(const QString& name)
{
    static QHash<QString, xcb_atom_t> known;
    if (const auto found = known.constFind(name); found != known.constEnd()) {
        return *found;
    }
    xcb_connection_t* const server = connection();
    if (server == nullptr) {
        return XCB_ATOM_NONE;
    }
    const QByteArray text = name.toLatin1();
    const auto cookie = xcb_intern_atom(server, 0, static_cast<uint16_t>(text.size()), text.constData());
    const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(server, cookie, nullptr));
    if (!reply) {
        return XCB_ATOM_NONE;
    }
    known.insert(name, reply->atom);
    return reply->atom;
}

bool X11Session::hasXTest()
{
    xcb_connection_t* const server = connection();
    if (server == nullptr) {
        return false;
    }
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(server, &xcb_test_id);
    return extension != nullptr && extension->present != 0;
}

bool X11Session::isComposited()
{
    xcb_connection_t* const server = connection();
    const xcb_atom_t manager = atom(QStringLiteral("_NET_WM_CM_S0"));
    if (server == nullptr || manager == XCB_ATOM_NONE) {
        return false;
    }
    const X11Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, manager), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

int X11Session::watchCompositing()
{
    xcb_connection_t* const server = connection();
    const xcb_atom_t manager = atom(QStringLiteral("_NET_WM_CM_S0"));
    const xcb_query_extension_reply_t* const fixes =
        server != nullptr ? xcb_get_extension_data(server, &xcb_xfixes_id) : nullptr;
    if (fixes == nullptr || fixes->present == 0 || manager == XCB_ATOM_NONE) {
        return -1;
    }
    xcb_xfixes_query_version_unchecked(server, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    xcb_xfixes_select_selection_input(server, root(), manager,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(server);
    return fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
}
