#pragma once

#include <pipewire/pipewire.h>

#include <functional>

/// Follows what one client of the sound server says of itself. Lives on the PipeWire thread, no longer than
/// the connection.
class ClientWatch
{
public:
    using Changed = std::function<void(const spa_dict* properties)>;

    ClientWatch(pw_registry* registry, quint32 client, Changed changed);
    ~ClientWatch();
    ClientWatch(const ClientWatch&) = delete;
    ClientWatch& operator=(const ClientWatch&) = delete;

private:
    Changed _changed;
    pw_proxy* _proxy;
    spa_hook _listener{};
};
