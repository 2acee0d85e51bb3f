#include "SoundServer.h"

#include "audio/AudioDeviceManager.h"
#include "linux/pipewire/PipewireAudioHardware.h"
#include "support/Command.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace {

/// The names of the sinks as the sound server lists them.
QStringList serverSinks()
{
    QStringList names;
    for (const QString& line : run(QStringLiteral("pactl list short sinks")).split(u'\n')) {
        names << line.section(u'\t', 1, 1);
    }
    return names;
}

} // namespace

/// The devices of the session's own sound server.
class DevicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void listsSinks();
    void switchesBothWays();
    void followsComingAndGoing();
    void followsServer();

private:
    QStringList listed() const;
    QString current() const;
    quint32 withUid(const QString& uid) const;

    SoundServer _server;
    PipewireAudioHardware _hardware;
    AudioDeviceManager _manager{_hardware};
};

void DevicesTest::init()
{
    QTRY_COMPARE((run(QStringLiteral("pactl set-default-sink speakers")), current()),
                 QStringLiteral("speakers"));
}

QStringList DevicesTest::listed() const
{
    QStringList uids;
    for (const AudioOutputDevice& device : _manager.outputDevices()) {
        uids << device.uid;
    }
    return uids;
}

QString DevicesTest::current() const
{
    const QStringList uids = listed();
    const auto isCurrent = [this](const QString& uid) { return withUid(uid) == _manager.currentOutput(); };
    const auto found = std::find_if(uids.begin(), uids.end(), isCurrent);
    return found != uids.end() ? *found : QString();
}

quint32 DevicesTest::withUid(const QString& uid) const
{
    const auto devices = _manager.outputDevices();
    const auto found = std::find_if(devices.begin(), devices.end(),
                                    [&uid](const AudioOutputDevice& device) { return device.uid == uid; });
    return found != devices.end() ? found->id : 0;
}

/// And no microphone.
void DevicesTest::listsSinks()
{
    const QString microphone = run(
        QStringLiteral("pactl load-module module-null-sink media.class=Audio/Source sink_name=microphone"));
    QTRY_VERIFY(run(QStringLiteral("pactl list short sources")).contains(QStringLiteral("microphone")));
    QTRY_COMPARE(listed(), serverSinks());
    QCOMPARE(listed(), QStringList({QStringLiteral("speakers"), QStringLiteral("headphones")}));
    QCOMPARE(_manager.outputDevices().constFirst().name, QStringLiteral("Speakers"));
    run(QStringLiteral("pactl unload-module ") + microphone);
}

void DevicesTest::switchesBothWays()
{
    for (const QString& name : {QStringLiteral("headphones"), QStringLiteral("speakers")}) {
        QSignalSpy changed(&_manager, &AudioDeviceManager::devicesChanged);
        _manager.setOutput(withUid(name));
        QTRY_COMPARE(run(QStringLiteral("pactl get-default-sink")), name);
        QTRY_COMPARE(current(), name);
        QTRY_VERIFY(!changed.isEmpty());
    }
    _manager.setOutput(0);
    _manager.setOutput(withUid(QStringLiteral("speakers")) + 10'000);
    run(QStringLiteral("pactl set-default-sink headphones")); // by somebody else
    QTRY_COMPARE(current(), QStringLiteral("headphones"));
}

void DevicesTest::followsComingAndGoing()
{
    const QStringList before = listed();
    const QString module = run(QStringLiteral(
        "pactl load-module module-null-sink sink_name=kitchen sink_properties=device.description=Küche"));
    QTRY_COMPARE(listed(), before + QStringList{QStringLiteral("kitchen")});
    QCOMPARE(_manager.outputDevices().constLast().name, QStringLiteral("Küche"));
    _manager.setOutput(withUid(QStringLiteral("kitchen")));
    QTRY_COMPARE(current(), QStringLiteral("kitchen"));
    run(QStringLiteral("pactl unload-module ") + module);
    QTRY_COMPARE(listed(), before);
    QTRY_VERIFY(before.contains(current()));
}

void DevicesTest::followsServer()
{
    const QStringList before = listed();
    _server.kill();
    QTRY_COMPARE(listed(), QStringList());
    QCOMPARE(_manager.currentOutput(), 0U);
    QVERIFY(_server.start());
    QTRY_COMPARE_WITH_TIMEOUT(listed(), before, 10'000);
}

QTEST_GUILESS_MAIN(DevicesTest)
#include "devices_test.moc"
