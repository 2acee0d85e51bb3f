#include "AllocationCount.h"

#include "audio/AudioCaptureService.h"
#include "base/RunLoop.h"
#include "support/FakeAudioHardware.h"
#include "support/LogFile.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>
#include <thread>

namespace {

/// A clock that the sampler's thread may read while the test moves it.
class SharedClock final : public RunLoop
{
public:
    Date now() const override { return {}; }
    Uptime uptime() const override { return {seconds}; }
    void after(double /*seconds*/, QObject* /*context*/, Work /*work*/) override {}
    std::unique_ptr<Timer> every(double /*seconds*/, QObject* /*context*/, Work /*work*/) override
    {
        return nullptr;
    }

    std::atomic<double> seconds = 1000;
};

struct Fixture {
    LogFile log;
    SharedClock clock;
    FakeAudioHardware hardware;
    AudioCaptureService service{hardware, clock};
};

const QString own = QStringLiteral("com.orvalen.pellar");
const QString setUp = QStringLiteral("tap device proc start");
const QString tornDown = QStringLiteral("stop -proc -device -tap");
const QString cap = QStringLiteral("AudioCap: ");
const QList<float> silence = {0, 0, 0, 0};

QList<float> tone(int samples)
{
    QList<float> tone;
    for (int i = 0; i < samples; ++i) {
        tone << static_cast<float>(std::sin(i * 0.3));
    }
    return tone;
}

} // namespace

class CaptureServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksForPermission_data();
    void asksForPermission();
    void forgetsRequestWhenStopped();
    void setsUp();
    void failsAndRecovers_data();
    void failsAndRecovers();
    void readsRate_data();
    void readsRate();
    void restartsOnlyForOtherProcesses_data();
    void restartsOnlyForOtherProcesses();
    void publishesSound();
    void stopsInSilence();
    void restsWhileNothingSounds();
    void followsTheRate();
    void startsFromAnyThread();
    void callbackDoesNotAllocate();
};

void CaptureServiceTest::asksForPermission_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("trace");
    QTest::addColumn<QString>("logged");
    QTest::addColumn<bool>("runs");
    QTest::addColumn<bool>("asks");

    const QString refused =
        QStringLiteral("Audio permission denied/restricted - open System Settings → Privacy "
                       "& Security → Microphone → enable Pellar Dev");
    QTest::newRow("not determined") << 0 << QStringLiteral("start: notDetermined → requestAccess")
                                    << QStringLiteral("Audio permission undetermined - requesting…") << false
                                    << true;
    QTest::newRow("restricted") << 1 << QStringLiteral("start: denied/restricted") << refused << false
                                << false;
    QTest::newRow("denied") << 2 << QStringLiteral("start: denied/restricted") << refused << false << false;
    QTest::newRow("authorised") << 3 << QStringLiteral("start: authorized → beginCapture")
                                << QStringLiteral("✓ Audio tap active (sampleRate=44100.000000)") << true
                                << false;
    QTest::newRow("unknown") << 7 << QStringLiteral("start: unknown auth status 7")
                             << QStringLiteral("Unknown audio permission status: 7") << false << false;
}

void CaptureServiceTest::asksForPermission()
{
    QFETCH(int, status);
    QFETCH(QString, trace);
    QFETCH(QString, logged);
    Fixture f;
    f.hardware.authorization = status;
    QTest::ignoreMessage(status == 0 || status == 3 ? QtInfoMsg : QtCriticalMsg, qUtf8Printable(logged));
    f.service.start();
    const QStringList lines = f.log.take();
    QCOMPARE(lines.value(0), cap + QStringLiteral("start: isRunning=false authStatus=%1").arg(status));
    QCOMPARE(lines.value(1), cap + trace);
    QTEST(f.service.isRunning(), "runs");
    QTEST(f.hardware.request != nullptr, "asks");
    if (!f.hardware.request) {
        return;
    }
    QTest::ignoreMessage(QtCriticalMsg, "Audio permission denied - visualizer will use synthetic animation");
    std::thread([&] { f.hardware.request(false); }).join();
    QCOMPARE(f.log.take(), {cap + QStringLiteral("requestAccess callback: granted=false")});
    QCoreApplication::processEvents();
    QVERIFY(!f.service.isRunning());
    std::thread([&] { f.hardware.request(true); }).join();
    QTRY_VERIFY(f.service.isRunning());
    QCOMPARE(f.log.take().value(0), cap + QStringLiteral("requestAccess callback: granted=true"));
}

void CaptureServiceTest::forgetsRequestWhenStopped()
{
    Fixture f;
    f.hardware.authorization = AudioHardware::notDetermined;
    f.service.start();
    f.service.stop();
    f.hardware.request(true);
    QCoreApplication::processEvents();
    QVERIFY(!f.service.isRunning());
    auto gone = std::make_unique<AudioCaptureService>(f.hardware, f.clock);
    gone->start();
    gone.reset();
    f.hardware.request(true); // nobody is there to begin
    QCoreApplication::processEvents();
    QCOMPARE(f.hardware.takeCalls(), QString());
}

void CaptureServiceTest::setsUp()
{
    Fixture f;
    f.hardware.processes = {{3, own},
                            {4, QStringLiteral("org.example.player")},
                            {5, std::nullopt},
                            {6, own + QStringLiteral(".signin")}};
    f.service.start();
    QCOMPARE(f.log.take().mid(2),
             QStringList({cap + QStringLiteral("findProcessIDs: matched [\"%1\", \"%1.signin\"]").arg(own),
                          cap + QStringLiteral("beginCapture: excluding 2 self-process(es), running=false"),
                          cap + QStringLiteral("beginCapture: ✓ global tap active sampleRate=44100.0")}));
    QCOMPARE(f.hardware.takeCalls(), setUp);
    QCOMPARE(f.hardware.tap.excludedProcesses, QList<AudioObjectId>({3, 6}));
    QCOMPARE(f.hardware.tap.muteBehavior, 0);
    const QString uid = QStringLiteral("tap-uid");
    QCOMPARE(f.hardware.aggregate,
             QVariantMap(
                 {{QStringLiteral("name"), QStringLiteral("Pellar Tap")},
                  {QStringLiteral("uid"), QStringLiteral("com.orvalen.pellar.tap.aggregate")},
                  {QStringLiteral("master"), uid},
                  {QStringLiteral("private"), 1},
                  {QStringLiteral("tapautostart"), 1},
                  {QStringLiteral("taps"),
                   QVariantList{QVariantMap{{QStringLiteral("uid"), uid}, {QStringLiteral("drift"), 0}}}}}));
}

void CaptureServiceTest::failsAndRecovers_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QString>("logged");
    QTest::addColumn<QString>("calls");

    QTest::newRow("tap") << "tap"
                         << "AudioHardwareCreateProcessTap failed: status=-50"
                         << "tap";
    QTest::newRow("no tap made") << "tap0"
                                 << "AudioHardwareCreateProcessTap failed: status=0"
                                 << "tap";
    QTest::newRow("uid") << "uid"
                         << "Could not read tap UID"
                         << "tap -tap";
    QTest::newRow("device") << "device"
                            << "AudioHardwareCreateAggregateDevice failed: status=-50"
                            << "tap device -tap";
    QTest::newRow("no device made") << "device0"
                                    << "AudioHardwareCreateAggregateDevice failed: status=0"
                                    << "tap device -tap";
    QTest::newRow("procedure") << "proc"
                               << "AudioDeviceCreateIOProcID failed: status=-50"
                               << "tap device proc -device -tap";
    QTest::newRow("no procedure") << "proc0"
                                  << "AudioDeviceCreateIOProcID failed: status=0"
                                  << "tap device proc -device -tap";
    QTest::newRow("start") << "start"
                           << "AudioDeviceStart failed: status=-50"
                           << "tap device proc start -device -tap";
}

void CaptureServiceTest::failsAndRecovers()
{
    QFETCH(QString, failing);
    QFETCH(QString, logged);
    Fixture f;
    f.hardware.failing = failing;
    f.hardware.uid = failing == QStringLiteral("uid") ? std::nullopt : f.hardware.uid;
    QTest::ignoreMessage(QtCriticalMsg, qUtf8Printable(logged));
    QTest::ignoreMessage(QtCriticalMsg, "setupTap failed - falling back to synthetic animation");
    f.service.start();
    QTEST(f.hardware.takeCalls(), "calls");
    QCOMPARE(f.log.take().last(), cap + QStringLiteral("beginCapture: setupTap FAILED"));
    QVERIFY(!f.service.isRunning());

    f.hardware.failing.clear();
    f.hardware.otherUid = QStringLiteral("device-uid"); // where the tap has none, this one counts
    f.service.start();
    QCOMPARE(f.hardware.takeCalls(), setUp);
    QVERIFY(f.service.isRunning());
    QCOMPARE(f.hardware.aggregate.value(QStringLiteral("master")).toString(),
             f.hardware.uid.value_or(QStringLiteral("device-uid")));
}

void CaptureServiceTest::readsRate_data()
{
    QTest::addColumn<std::optional<double>>("nominal");
    QTest::addColumn<float>("rate");
    QTest::newRow("as it is") << std::optional(96000.0) << 96000.0F;
    QTest::newRow("unknown") << std::optional<double>() << 48000.0F;
}

void CaptureServiceTest::readsRate()
{
    QFETCH(std::optional<double>, nominal);
    Fixture f;
    f.hardware.rate = nominal;
    f.service.start();
    QTEST(f.service.sampleRate(), "rate");
}

void CaptureServiceTest::restartsOnlyForOtherProcesses_data()
{
    using Processes = QMap<AudioObjectId, std::optional<QString>>;
    QTest::addColumn<Processes>("later");
    QTest::addColumn<QString>("calls");

    const QString rebuilt = tornDown + u' ' + setUp;
    const Processes same = {{3, own}};
    QTest::newRow("the same") << same << QString();
    QTest::newRow("a stranger more") << Processes{{3, own}, {4, QStringLiteral("x")}} << QString();
    QTest::newRow("a second own one") << Processes{{3, own}, {4, own + QStringLiteral(".x")}} << rebuilt;
    QTest::newRow("another one") << Processes{{5, own}} << rebuilt;
    QTest::newRow("none left") << Processes{} << rebuilt;
}

void CaptureServiceTest::restartsOnlyForOtherProcesses()
{
    using Processes = QMap<AudioObjectId, std::optional<QString>>;
    QFETCH(Processes, later);
    Fixture f;
    f.hardware.processes = {{3, own}};
    f.service.start();
    f.hardware.takeCalls();
    f.hardware.processes = later;
    f.hardware.authorization = AudioHardware::denied; // not asked again while it runs
    f.service.start();
    QTEST(f.hardware.takeCalls(), "calls");
    QVERIFY(f.service.isRunning());
}

void CaptureServiceTest::publishesSound()
{
    Fixture f;
    f.service.start();
    QSignalSpy lives(&f.service, &AudioCapture::liveChanged);
    QSignalSpy frames(&f.service, &AudioCapture::bandsPublished);
    QTRY_VERIFY(frames.size() > 1);
    QVERIFY(!f.service.isLive() && f.service.bands() == silence);

    f.hardware.play(tone(1024), 1); // 2105 Hz
    QTRY_VERIFY(f.service.bands()[2] > 0.9F);
    QVERIFY(f.service.isLive());
    QCOMPARE(f.service.bands()[0] + f.service.bands()[3], 0.0F);

    f.hardware.play(QList<float>(1024), 1);
    frames.clear();
    QTRY_VERIFY(frames.size() > 2);
    f.clock.seconds = f.clock.seconds + 1.9;
    frames.clear();
    QTRY_VERIFY(frames.size() > 2);
    QVERIFY(f.service.isLive());
    f.clock.seconds = f.clock.seconds + 0.1;
    QTRY_VERIFY(!f.service.isLive());
    QCOMPARE(lives.size(), 2);
}

void CaptureServiceTest::restsWhileNothingSounds()
{
    Fixture f;
    f.service.start();
    const auto tell = f.hardware.deviceChanged;
    QSignalSpy frames(&f.service, &AudioCapture::bandsPublished);
    QTRY_VERIFY(frames.size() > 1);
    tell({.isSounding = false, .sampleRate = std::nullopt});
    QTRY_VERIFY((frames.clear(), !frames.wait(100)));
    tell({.isSounding = true, .sampleRate = std::nullopt});
    QTRY_VERIFY(frames.size() > 1);
    f.service.stop();
    QTRY_VERIFY((frames.clear(), !frames.wait(100)));
    tell({.isSounding = true, .sampleRate = std::nullopt}); // of a device that is gone
    QVERIFY(!frames.wait(100));
}

void CaptureServiceTest::followsTheRate()
{
    Fixture f;
    f.service.start();
    f.hardware.play(tone(1024), 1); // 2105 Hz, in the third band
    QTRY_VERIFY(f.service.bands()[2] > 0.9F);
    f.hardware.deviceChanged({.isSounding = true, .sampleRate = 192'000});
    QTRY_VERIFY(f.service.bands()[3] > 0.9F && f.service.bands()[2] < 0.1F);
}

void CaptureServiceTest::stopsInSilence()
{
    Fixture f;
    f.service.start();
    f.hardware.play(tone(2048), 1);
    QTRY_VERIFY(f.service.isLive());
    f.hardware.takeCalls();
    QTest::qSleep(100); // frames are waiting for this thread now
    QSignalSpy frames(&f.service, &AudioCapture::bandsPublished);
    f.service.stop();
    QCOMPARE(f.hardware.takeCalls(), tornDown);
    QVERIFY(!f.service.isRunning());
    QTRY_VERIFY(!f.service.isLive());
    QTest::qWait(100);
    QCOMPARE(f.service.bands(), silence);
    QCOMPARE(frames.size(), 1); // the silence; nothing of what was waiting
    f.service.stop();
    QCOMPARE(f.hardware.takeCalls(), QString());
    f.service.start();
    QTRY_VERIFY(f.service.isLive());
}

void CaptureServiceTest::startsFromAnyThread()
{
    Fixture f;
    std::thread([&] { f.service.start(); }).join();
    QTRY_VERIFY(f.service.isRunning());
    std::thread([&] { f.service.stop(); }).join();
    QTRY_VERIFY(!f.service.isRunning());
}

void CaptureServiceTest::callbackDoesNotAllocate()
{
    Fixture f;
    f.service.start();
    const QList<float> sound = tone(2048);
    const AudioBuffer buffer{.channels = 2, .byteSize = 2048 * sizeof(float), .data = sound.constData()};
    const AudioBufferList list{.count = 1, .buffers = &buffer};
    const auto call = [&](const AudioBufferList* input, void* client) {
        return AudioCaptureService::audioIOProc(8, nullptr, input, nullptr, nullptr, nullptr, client);
    };
    AllocationCount count;
    for (int i = 0; i < 1000; ++i) {
        QCOMPARE(call(&list, &f.service), 0);
    }
    call(&list, nullptr);
    call(nullptr, &f.service);
    QCOMPARE(count.take(), 0);
    const QString made(1000, u'x');
    QCOMPARE(count.take(), 1); // it does count
    const auto object = std::make_unique<QObject>();
    QVERIFY(count.take() > 0);
}

QTEST_GUILESS_MAIN(CaptureServiceTest)
#include "capture_service_test.moc"
