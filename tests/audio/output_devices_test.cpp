#include "audio/AudioDeviceManager.h"
#include "support/FakeAudioHardware.h"

#include <QSignalSpy>
#include <QTest>

class OutputDevicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsWhatCanPlay();
    void switches();
};

void OutputDevicesTest::listsWhatCanPlay()
{
    FakeAudioHardware hardware;
    const AudioDeviceManager manager(hardware);
    QCOMPARE(manager.outputDevices(), QList<AudioOutputDevice>());
    const QString name = QStringLiteral("Name");
    const QString uid = QStringLiteral("uid");
    hardware.systemDevices = {{3, {.outputStreams = 1, .name = name, .uid = uid}},
                              {4, {.outputStreams = 0, .name = name, .uid = uid}},
                              {5, {.outputStreams = std::nullopt, .name = name, .uid = uid}},
                              {6, {.outputStreams = 1, .name = std::nullopt, .uid = uid}},
                              {7, {.outputStreams = 1, .name = name, .uid = std::nullopt}},
                              {9, {.outputStreams = 2, .name = name, .uid = uid}}};
    hardware.deviceIds = {9, 4, 5, 6, 7, 3};
    const QList<AudioOutputDevice> expected = {{9, name, uid}, {3, name, uid}};
    QCOMPARE(manager.outputDevices(), expected);
}

void OutputDevicesTest::switches()
{
    FakeAudioHardware hardware;
    AudioDeviceManager manager(hardware);
    QCOMPARE(manager.currentOutput(), 0U);
    QSignalSpy changed(&manager, &AudioDeviceManager::devicesChanged);
    manager.setOutput(9);
    QCOMPARE(manager.currentOutput(), 9U);
    hardware.devicesChanged();
    QTRY_COMPARE(changed.count(), 1);
}

QTEST_GUILESS_MAIN(OutputDevicesTest)
#include "output_devices_test.moc"
