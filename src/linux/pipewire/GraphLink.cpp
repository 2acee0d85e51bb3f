#include "linux/pipewire/GraphLink.h"

#include "linux/pipewire/PipewireLog.h"

#include <QByteArray>

namespace {

pw_proxy* makeLink(pw_core* core, CaptureGraph::Link ports)
{
    const QByteArray output = QByteArray::number(ports.outputPort);
    const QByteArray input = QByteArray::number(ports.inputPort);
    const spa_dict_item items[] = {
        {PW_KEY_LINK_OUTPUT_PORT, output.constData()},
        {PW_KEY_LINK_INPUT_PORT, input.constData()},
        {PW_KEY_LINK_PASSIVE, "true"},
        {PW_KEY_OBJECT_LINGER, "false"},
    };
    const spa_dict properties{.flags = 0, .n_items = std::size(items), .items = items};
    return static_cast<pw_proxy*>(
        pw_core_create_object(core, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties, 0));
}

} // namespace

GraphLink::GraphLink(pw_core* core, CaptureGraph::Link ports) : _ports(ports), _proxy(makeLink(core, ports))
{
    static const pw_proxy_events events = [] {
        pw_proxy_events life{};
        life.version = PW_VERSION_PROXY_EVENTS;
        life.error = [](void* data, int /*sequence*/, int /*result*/, const char* message) {
            static_cast<GraphLink*>(data)->failed(message);
        };
        return life;
    }();
    if (_proxy != nullptr) {
        pw_proxy_add_listener(_proxy, &_listener, &events, this);
    }
}

GraphLink::~GraphLink()
{
    if (_proxy != nullptr) {
        spa_hook_remove(&_listener);
        pw_proxy_destroy(_proxy);
    }
}

/// Usual when a stream ends at that moment.
void GraphLink::failed(const char* message) const
{
    qCDebug(pipewireLog, "no link from port %u to %u: %s", _ports.outputPort, _ports.inputPort, message);
}
