#include "linux/pipewire/ClientWatch.h"

ClientWatch::ClientWatch(pw_registry* registry, quint32 client, Changed changed)
    : _changed(std::move(changed))
    , _proxy(static_cast<pw_proxy*>(
          pw_registry_bind(registry, client, PW_TYPE_INTERFACE_Client, PW_VERSION_CLIENT, 0)))
{
    static const pw_client_events events = {
        .version = PW_VERSION_CLIENT_EVENTS,
        .info = [](void* data,
                   const pw_client_info* info) { static_cast<ClientWatch*>(data)->_changed(info->props); },
        .permissions = nullptr,
    };
    if (_proxy != nullptr) {
        pw_proxy_add_object_listener(_proxy, &_listener, &events, this);
    }
}

ClientWatch::~ClientWatch()
{
    if (_proxy != nullptr) {
        spa_hook_remove(&_listener);
        pw_proxy_destroy(_proxy);
    }
}
