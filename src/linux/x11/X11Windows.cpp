#include "linux/x11/X11Windows.h"

#include "linux/x11/X11Reply.h"
#include "linux/x11/X11Session.h"

#include <QList>

#include <algorithm>

namespace {

using Property = X11Reply<xcb_get_property_reply_t>;

constexpr uint32_t mostWindows = 1024;
constexpr uint32_t longestClass = 64; // units of four bytes

xcb_get_property_cookie_t ask(xcb_connection_t* server, xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                              uint32_t length)
{
    return xcb_get_property(server, 0, window, name, type, 0, length);
}

/// Empty when the property is missing or of another kind.
std::vector<uint32_t> numbers(xcb_connection_t* server, xcb_get_property_cookie_t cookie)
{
    const Property reply(xcb_get_property_reply(server, cookie, nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* const first = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

/// WM_CLASS is two texts, each with a zero behind it: the instance and the class.
QString windowClass(xcb_connection_t* server, xcb_get_property_cookie_t cookie)
{
    const Property reply(xcb_get_property_reply(server, cookie, nullptr));
    if (!reply || reply->format != 8) {
        return {};
    }
    const auto* const first = static_cast<const char*>(xcb_get_property_value(reply.get()));
    const QByteArray both(first, xcb_get_property_value_length(reply.get()));
    return QString::fromUtf8(both.split('\0').value(1)).toLower();
}

std::vector<xcb_window_t> listedWindows(xcb_connection_t* server)
{
    const auto askFor = [&](const QString& name) {
        return ask(server, X11Session::root(), X11Session::atom(name), XCB_ATOM_WINDOW, mostWindows);
    };
    const auto stackedCookie = askFor(QStringLiteral("_NET_CLIENT_LIST_STACKING"));
    const auto listedCookie = askFor(QStringLiteral("_NET_CLIENT_LIST"));
    std::vector<xcb_window_t> stacked = numbers(server, stackedCookie);
    const std::vector<xcb_window_t> listed = numbers(server, listedCookie);
    std::reverse(stacked.begin(), stacked.end());
    return stacked.empty() ? listed : stacked;
}

} // namespace

std::vector<X11Windows::Description> X11Windows::managed()
{
    xcb_connection_t* const server = X11Session::connection();
    if (server == nullptr) {
        return {};
    }
    struct Question {
        xcb_window_t window;
        xcb_get_property_cookie_t processId;
        xcb_get_property_cookie_t windowClass;
    };
    const xcb_atom_t processId = X11Session::atom(QStringLiteral("_NET_WM_PID"));
    std::vector<Question> questions;
    for (const xcb_window_t window : listedWindows(server)) {
        questions.push_back({window, ask(server, window, processId, XCB_ATOM_CARDINAL, 1),
                             ask(server, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, longestClass)});
    }
    std::vector<Description> descriptions;
    for (const Question& question : questions) {
        const std::vector<uint32_t> ids = numbers(server, question.processId);
        const bool hasProcess = !ids.empty() && ids.front() != 0;
        descriptions.push_back({question.window,
                                hasProcess ? std::optional<qint64>(ids.front()) : std::nullopt,
                                windowClass(server, question.windowClass)});
    }
    return descriptions;
}

xcb_window_t X11Windows::active()
{
    xcb_connection_t* const server = X11Session::connection();
    if (server == nullptr) {
        return XCB_WINDOW_NONE;
    }
    const xcb_atom_t name = X11Session::atom(QStringLiteral("_NET_ACTIVE_WINDOW"));
    const auto windows = numbers(server, ask(server, X11Session::root(), name, XCB_ATOM_WINDOW, 1));
    return windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front();
}

void X11Windows::activate(xcb_window_t window)
{
    constexpr uint32_t sentByPager = 2; // which window managers take for the user's own wish
    xcb_connection_t* const server = X11Session::connection();
    if (server == nullptr) {
        return;
    }
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = X11Session::atom(QStringLiteral("_NET_ACTIVE_WINDOW"));
    message.data.data32[0] = sentByPager;
    message.data.data32[1] = XCB_CURRENT_TIME;
    constexpr uint32_t receivers = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_send_event(server, 0, X11Session::root(), receivers, reinterpret_cast<const char*>(&message));
    xcb_flush(server);
}
