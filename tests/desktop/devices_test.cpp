#include "audio/AudioDeviceManager.h"
#include "linux/pipewire/PipewireAudioHardware.h"
#include "support/Command.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

/// The devices of the session's own sound server.
class DevicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTRY_COMPARE((run(u"pactl set-default-sink speakers"_s), sinks()), u"speakers* headphones"_s);
    }

    void switchesBothWays()
    {
        const auto devices = _manager.outputDevices();
        QCOMPARE(devices.constFirst().name, u"Speakers"_s);
        _manager.setOutput(devices.constLast().id);
        QTRY_COMPARE(run(u"pactl get-default-sink"_s), u"headphones"_s);
        QTRY_COMPARE(sinks(), u"speakers headphones*"_s);
        _manager.setOutput(0);
        _manager.setOutput(devices.constFirst().id + 10'000);
        run(u"pactl set-default-sink speakers"_s); // by somebody else
        QTRY_COMPARE(sinks(), u"speakers* headphones"_s);
    }

    /// But no microphones.
    void followsComingAndGoing()
    {
        const QString load = u"pactl load-module module-null-sink "_s;
        const QString microphone = run(load + u"media.class=Audio/Source sink_name=microphone");
        QTRY_VERIFY(run(u"pactl list short sources"_s).contains(u"microphone"_s));
        const QString kitchen = run(load + u"sink_name=kitchen sink_properties=device.description=Küche");
        QTRY_COMPARE(sinks(), u"speakers* headphones kitchen"_s);
        QCOMPARE(_manager.outputDevices().constLast().name, u"Küche"_s);
        _manager.setOutput(_manager.outputDevices().constLast().id);
        QTRY_COMPARE(sinks(), u"speakers headphones kitchen*"_s);
        run(u"pactl unload-module "_s + kitchen);
        run(u"pactl unload-module "_s + microphone);
        QTRY_VERIFY(sinks() == u"speakers* headphones" || sinks() == u"speakers headphones*");
    }

private:
    /// Those that are listed, with a star behind the current one.
    QString sinks() const
    {
        QStringList uids;
        for (const AudioOutputDevice& device : _manager.outputDevices()) {
            uids << device.uid + (device.id == _manager.currentOutput() ? u"*"_s : QString());
        }
        return uids.join(u' ');
    }

    PipewireAudioHardware _hardware;
    AudioDeviceManager _manager{_hardware};
};

QTEST_GUILESS_MAIN(DevicesTest)
#include "devices_test.moc"
