// How the session handles the objects in the graph.

#include "linux/pipewire/GraphProperties.h"
#include "linux/pipewire/PipewireSession.h"

#include <cstring>

namespace {

using GraphProperties::text;

} // namespace

void PipewireSession::globalAdded(Id id, const char* type, const spa_dict* properties)
{
    const auto isType = [type](const char* name) { return std::strcmp(type, name) == 0; };
    if (isType(PW_TYPE_INTERFACE_Client)) {
        _clients[id] = std::make_unique<ClientWatch>(
            _registry, id, [this, id](const spa_dict* client) { clientChanged(id, client); });
    } else if (isType(PW_TYPE_INTERFACE_Node)) {
        nodeAdded(id, properties);
    } else if (isType(PW_TYPE_INTERFACE_Port)) {
        portAdded(id, properties);
    } else if (isType(PW_TYPE_INTERFACE_Link)) {
        linkAdded(id, properties);
    } else if (isType(PW_TYPE_INTERFACE_Metadata)) {
        if (text(properties, PW_KEY_METADATA_NAME) == QStringLiteral("default")) {
            _defaultSinkId = id;
            _defaultSink = std::make_unique<DefaultSink>(_loop, _registry, id, [this] { publishDevices(); });
        }
    } else if (isType(PW_TYPE_INTERFACE_Factory)) {
        factoryAdded(properties);
    }
}

/// The server also announces an object when this connection gets the permission to see it.
void PipewireSession::factoryAdded(const spa_dict* properties)
{
    _canLink |= text(properties, PW_KEY_FACTORY_TYPE_NAME) == QString::fromUtf8(PW_TYPE_INTERFACE_Link);
    if (_canLink && authorization() == AudioHardware::restricted) {
        conclude(AudioHardware::authorized);
    }
}

void PipewireSession::nodeAdded(Id id, const spa_dict* properties)
{
    const QString mediaClass = text(properties, PW_KEY_MEDIA_CLASS);
    if (mediaClass == QStringLiteral("Stream/Output/Audio")) {
        _graph.addStream(id, GraphProperties::number(properties, PW_KEY_CLIENT_ID));
        return;
    }
    if (text(properties, PW_KEY_NODE_NAME) == QString::fromUtf8(CaptureStream::nodeName)) {
        _graph.addCapture(id);
        return;
    }
    const bool playsAndRecords = mediaClass == QStringLiteral("Audio/Duplex");
    const bool isOutput = playsAndRecords || mediaClass == QStringLiteral("Audio/Sink");
    if (!isOutput && mediaClass != QStringLiteral("Audio/Source")) {
        return;
    }
    QString name;
    for (const char* key : {PW_KEY_NODE_DESCRIPTION, PW_KEY_NODE_NICK, PW_KEY_NODE_NAME}) {
        name = name.isEmpty() ? text(properties, key) : name;
    }
    _devices.add({.id = id,
                  .serial = GraphProperties::number(properties, PW_KEY_OBJECT_SERIAL).value_or(id),
                  .uid = text(properties, PW_KEY_NODE_NAME),
                  .name = name,
                  .isOutput = isOutput});
    publishDevices();
}

void PipewireSession::portAdded(Id id, const spa_dict* properties)
{
    const auto node = GraphProperties::number(properties, PW_KEY_NODE_ID);
    const bool isSound = text(properties, PW_KEY_FORMAT_DSP) == QStringLiteral("32 bit float mono audio") &&
                         text(properties, PW_KEY_PORT_MONITOR) != QStringLiteral("true");
    if (node && isSound) {
        _graph.addPort(id, *node, text(properties, PW_KEY_PORT_DIRECTION) == QStringLiteral("in"),
                       text(properties, PW_KEY_AUDIO_CHANNEL));
        updateCapture();
    }
}

void PipewireSession::linkAdded(Id id, const spa_dict* properties)
{
    const auto outputNode = GraphProperties::number(properties, PW_KEY_LINK_OUTPUT_NODE);
    const auto inputNode = GraphProperties::number(properties, PW_KEY_LINK_INPUT_NODE);
    if (outputNode && inputNode) {
        _graph.addLink(id, *outputNode, *inputNode);
        updateCapture();
    }
}

void PipewireSession::globalRemoved(Id id)
{
    _clients.erase(id);
    _graph.remove(id);
    publishProcesses();
    updateCapture();
    const bool isDevice = _devices.remove(id);
    const bool isDefault = _defaultSink && id == _defaultSinkId;
    if (isDefault) {
        _defaultSink.reset();
    }
    if (isDevice || isDefault) {
        publishDevices();
    }
}

void PipewireSession::clientChanged(Id id, const spa_dict* properties)
{
    if (const auto process = GraphProperties::process(properties)) {
        _graph.setClient(id, process->id, process->bundleId);
        publishProcesses();
        updateCapture();
    }
}

void PipewireSession::publishProcesses()
{
    const std::lock_guard guard(_lock);
    _processes = _graph.processes();
}

/// Not before all of them are known.
void PipewireSession::publishDevices()
{
    if (_roundTrips > 0) {
        return;
    }
    bool isNews = false;
    {
        const QString sink = _defaultSink ? _defaultSink->name() : QString();
        const std::lock_guard guard(_lock);
        isNews = _publishedDevices != _devices || _publishedSink != sink;
        _publishedDevices = _devices;
        _publishedSink = sink;
    }
    if (isNews && _devicesChanged) {
        _devicesChanged();
    }
}

void PipewireSession::updateCapture()
{
    if (_capture && _core != nullptr && _roundTrips == 0) {
        _capture->update(_core, _graph);
    }
}
