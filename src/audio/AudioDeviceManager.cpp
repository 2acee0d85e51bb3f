#include "audio/AudioDeviceManager.h"

#include "platform/AudioHardware.h"

#include <QCoreApplication>
#include <QPointer>

AudioDeviceManager::AudioDeviceManager(AudioHardware& hardware) : _hardware(hardware)
{
    const auto tell = [manager = QPointer(this)] {
        if (!manager.isNull()) {
            Q_EMIT manager->devicesChanged();
        }
    };
    _hardware.observeDevices(
        [tell] { QMetaObject::invokeMethod(QCoreApplication::instance(), tell, Qt::QueuedConnection); });
}

QList<AudioOutputDevice> AudioDeviceManager::outputDevices() const
{
    QList<AudioOutputDevice> outputs;
    const QList<AudioObjectId> devices = _hardware.devices().value_or(QList<AudioObjectId>());
    for (const AudioObjectId device : devices) {
        if (_hardware.outputStreamCount(device).value_or(0) < 1) {
            continue;
        }
        const std::optional<QString> name = _hardware.deviceName(device);
        const std::optional<QString> uid = _hardware.deviceUid(device);
        if (name && uid) {
            outputs.append({.id = device, .name = *name, .uid = *uid});
        }
    }
    return outputs;
}

quint32 AudioDeviceManager::currentOutput() const
{
    return _hardware.defaultOutputDevice().value_or(0);
}

void AudioDeviceManager::setOutput(quint32 id)
{
    _hardware.setDefaultOutputDevice(id);
}
