#include "SoundServer.h"

#include "audio/AudioCaptureService.h"
#include "audio/AudioDeviceManager.h"
#include "base/EventLoop.h"
#include "linux/pipewire/PipewireAudioHardware.h"
#include "support/Command.h"
#include "support/LogFile.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QString pactl(const QString& words)
{
    return output(QStringLiteral("pactl"), words.split(u' ')).trimmed();
}

/// The names of the sinks as the sound server lists them.
QStringList serverSinks()
{
    QStringList names;
    for (const QString& line : pactl(QStringLiteral("list short sinks")).split(u'\n')) {
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

    LogFile _log;
    EventLoop _runLoop;
    SoundServer _server;
    PipewireAudioHardware _hardware;
    AudioDeviceManager _manager{_hardware};
};

void DevicesTest::init()
{
    QTRY_VERIFY(!listed().isEmpty() && !current().isEmpty());
}

QStringList DevicesTest::listed() const
{
    QStringList uids;
    const auto devices = _manager.outputDevices();
    for (const AudioOutputDevice& device : devices) {
        uids << device.uid;
    }
    return uids;
}

QString DevicesTest::current() const
{
    const auto devices = _manager.outputDevices();
    for (const AudioOutputDevice& device : devices) {
        if (device.id == _manager.currentOutput()) {
            return device.uid;
        }
    }
    return {};
}

quint32 DevicesTest::withUid(const QString& uid) const
{
    const auto devices = _manager.outputDevices();
    for (const AudioOutputDevice& device : devices) {
        if (device.uid == uid) {
            return device.id;
        }
    }
    return 0;
}

void DevicesTest::listsSinks()
{
    AudioCaptureService capture(_hardware, _runLoop);
    capture.start();
    QTRY_VERIFY(capture.isRunning());
    QTRY_VERIFY(output(QStringLiteral("pw-cli"), {QStringLiteral("ls"), QStringLiteral("Node")})
                    .contains(QStringLiteral("pellar.capture")));
    QTRY_COMPARE(listed(), serverSinks());
    QCOMPARE(listed().size(), 2);
    QCOMPARE(_manager.outputDevices().constFirst().name, QStringLiteral("Speakers"));
}

void DevicesTest::switchesBothWays()
{
    QCOMPARE(current(), QStringLiteral("speakers"));
    for (const QString& name : {QStringLiteral("headphones"), QStringLiteral("speakers")}) {
        QSignalSpy changed(&_manager, &AudioDeviceManager::devicesChanged);
        _manager.setOutput(withUid(name));
        QTRY_COMPARE(pactl(QStringLiteral("get-default-sink")), name);
        QTRY_COMPARE(current(), name);
        QTRY_VERIFY(!changed.isEmpty());
    }
    pactl(QStringLiteral("set-default-sink headphones"));
    QTRY_COMPARE(current(), QStringLiteral("headphones"));

    _manager.setOutput(0);
    _manager.setOutput(withUid(QStringLiteral("speakers")) + 10'000);
    QTest::qWait(100);
    QCOMPARE(pactl(QStringLiteral("get-default-sink")), QStringLiteral("headphones"));
}

void DevicesTest::followsComingAndGoing()
{
    const QStringList before = listed();
    const QString module = pactl(QStringLiteral(
        "load-module module-null-sink sink_name=kitchen sink_properties=device.description=Küche"));
    QTRY_COMPARE(listed(), before + QStringList{QStringLiteral("kitchen")});
    QCOMPARE(_manager.outputDevices().constLast().name, QStringLiteral("Küche"));
    _manager.setOutput(withUid(QStringLiteral("kitchen")));
    QTRY_COMPARE(current(), QStringLiteral("kitchen"));
    pactl(QStringLiteral("unload-module ") + module);
    QTRY_COMPARE(listed(), before);
    QTRY_VERIFY(before.contains(current()));
}

void DevicesTest::followsServer()
{
    _server.kill();
    QTRY_COMPARE(listed(), QStringList());
    QCOMPARE(_manager.currentOutput(), 0U);
    QVERIFY(_server.start());
    QTRY_COMPARE_WITH_TIMEOUT(listed(), QStringList{QStringLiteral("speakers")}, 10'000);
}

QTEST_GUILESS_MAIN(DevicesTest)
#include "devices_test.moc"
