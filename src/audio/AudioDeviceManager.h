#pragma once

#include "audio/AudioOutputDevice.h"

#include <QObject>

class AudioHardware;

/// The devices that the computer's sound can be sent to. What cannot be read is left out, and a switch that
/// is refused leaves things as they are.
class AudioDeviceManager : public QObject
{
    Q_OBJECT

public:
    explicit AudioDeviceManager(AudioHardware& hardware);

    /// In the system's order, as they are now.
    QList<AudioOutputDevice> outputDevices() const;

    /// The device that the system plays on; 0 when it cannot be told.
    quint32 currentOutput() const;

    /// Has the system play on another device.
    void setOutput(quint32 id);

Q_SIGNALS:
    /// The list or the current device may be another one now.
    void devicesChanged();

private:
    AudioHardware& _hardware;
};
