#pragma once

#include <QList>
#include <QString>

#include <optional>

/// The sinks and sources of the sound graph.
class DeviceList
{
public:
    struct Device {
        quint32 id = 0;
        quint64 serial = 0; ///< larger for one that came later, which an id need not be
        QString uid;        ///< the node's name
        QString name;
        bool isOutput = false;

        friend bool operator==(const Device&, const Device&) = default;
    };

    /// Puts a device in its place, which is that of its coming.
    void add(const Device& device);

    /// False when it is no device that was to be removed.
    bool remove(quint32 id);

    const QList<Device>& devices() const { return _devices; }
    std::optional<Device> withId(quint32 id) const;

    /// The output of this name.
    std::optional<Device> output(const QString& uid) const;

    friend bool operator==(const DeviceList&, const DeviceList&) = default;

private:
    QList<Device> _devices;
};
