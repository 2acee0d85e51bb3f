#include "linux/pipewire/DeviceList.h"

#include <algorithm>

namespace {

template<typename Predicate>
std::optional<DeviceList::Device> find(const QList<DeviceList::Device>& devices, Predicate isWanted)
{
    const auto found = std::find_if(devices.begin(), devices.end(), isWanted);
    return found != devices.end() ? std::optional(*found) : std::nullopt;
}

} // namespace

void DeviceList::add(const Device& device)
{
    const auto comesEarlier = [](const Device& a, const Device& b) { return a.serial < b.serial; };
    _devices.insert(std::upper_bound(_devices.cbegin(), _devices.cend(), device, comesEarlier), device);
}

bool DeviceList::remove(quint32 id)
{
    return _devices.removeIf([id](const Device& device) { return device.id == id; }) > 0;
}

std::optional<DeviceList::Device> DeviceList::withId(quint32 id) const
{
    return find(_devices, [id](const Device& device) { return device.id == id; });
}

std::optional<DeviceList::Device> DeviceList::output(const QString& uid) const
{
    return find(_devices, [&uid](const Device& device) { return device.isOutput && device.uid == uid; });
}
