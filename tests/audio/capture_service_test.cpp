#include "audio/AudioCaptureService.h"
#include "base/RunLoop.h"
#include "support/FakeAudioHardware.h"
#include "support/LogFile.h"

#include <QtTest>

#include <cmath>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A clock that the sampler's thread may read, which it does once a frame, while the test moves it.
class SharedClock final : public RunLoop
{
public:
    Date now() const override { return {}; }
    Uptime uptime() const override { return (++questions, Uptime{seconds}); }
    void after(double /*seconds*/, QObject* /*context*/, Work /*work*/) override {}
    std::unique_ptr<Timer> once(double /*seconds*/, QObject* /*context*/, Work /*work*/) override
    {
        return nullptr;
    }
    std::unique_ptr<Timer> every(double /*seconds*/, QObject* /*context*/, Work /*work*/) override
    {
        return nullptr;
    }

    std::atomic<double> seconds = 1000;
    mutable std::atomic<int> questions = 0;
};

struct Fixture {
    LogFile log;
    SharedClock clock;
    FakeAudioHardware hardware;
    AudioCaptureService service{hardware, clock};
};

const QString own = u"com.orvalen.pellar"_s;
const QString setUp = u"tap device proc start"_s;
const QString tornDown = u"stop -proc -device -tap"_s;
const QList<float> silence = {0, 0, 0, 0};

/// 2105 Hz at 44.1 kHz, in the third band.
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
    void forgetsRequestWhenStopped()
    {
        Fixture f;
        f.hardware.authorization = AudioHardware::notDetermined;
        f.service.start();
        f.service.stop();
        f.hardware.request(true);
        QCoreApplication::processEvents();
        AudioCaptureService(f.hardware, f.clock).start();
        f.hardware.request(true); // nobody is there to begin
        QCoreApplication::processEvents();
        QCOMPARE(f.hardware.takeCalls(), QString());
    }

    void leavesItselfOut()
    {
        Fixture f;
        f.hardware.processes = {{3, own}, {5, std::nullopt}};
        f.hardware.rate = std::nullopt;
        const auto startWith = [&f](AudioObjectId process, const QString& name) {
            f.hardware.processes.insert(process, name);
            f.service.start();
            return f.hardware.takeCalls();
        };
        QCOMPARE(startWith(4, u"org.example.player"_s), setUp);
        QCOMPARE(f.hardware.tap.excludedProcesses, QList<AudioObjectId>({3}));
        QCOMPARE(f.service.sampleRate(), 48000.0F); // as long as the device does not know its own

        f.hardware.authorization = AudioHardware::denied; // not asked again while it runs
        QCOMPARE(startWith(6, u"org.example.other"_s), QString());
        QCOMPARE(startWith(7, own + u".signin"_s), tornDown + u' ' + setUp);
        QCOMPARE(f.hardware.tap.excludedProcesses, QList<AudioObjectId>({3, 7}));
    }

    void followsItsDevice()
    {
        Fixture f;
        f.service.start();
        f.hardware.play(tone(1024), 1);
        QTRY_VERIFY(f.service.bands()[2] > 0.9F && f.service.isLive());
        f.hardware.deviceChanged({.isSounding = true, .sampleRate = 192'000}); // the same samples, higher
        QTRY_VERIFY(f.service.bands()[3] > 0.9F && f.service.bands()[2] < 0.1F);
        f.hardware.deviceChanged({.isSounding = false, .sampleRate = 192'000}); // and delivers nothing more
        QTRY_VERIFY(f.service.bands()[3] < 0.01F);
        f.hardware.deviceChanged({.isSounding = true, .sampleRate = 192'000});
        for (const double seconds : {0.0, 1.9, 0.1}) {
            QVERIFY(f.service.isLive());
            f.clock.seconds = f.clock.seconds + seconds;
            QSignalSpy frames(&f.service, &AudioCapture::bandsPublished);
            QTRY_VERIFY(frames.size() > 2);
        }
        QVERIFY(!f.service.isLive());
    }

    /// Who looks 15 times a second is given two frames at once, each of its own time.
    void makesFramesTogether()
    {
        Fixture f;
        f.service.start();
        f.hardware.play(tone(4096), 1);
        f.hardware.play(QList<float>(1200), 1); // the newest frame is silent, the one 1470 back is not
        QList<float> levels;
        connect(&f.service, &AudioCapture::bandsPublished, this,
                [&levels](const QList<float>& bands) { levels << bands[2]; });
        QTRY_VERIFY(levels.size() > 3);
        QCOMPARE(*std::max_element(levels.begin(), levels.end()), 0.0F);
        f.service.setPace(15);
        levels.clear();
        QTRY_VERIFY((f.service.catchUp(), levels.size() >= 8));
        const qsizetype first =
            levels.lastIndexOf(0.0F) + 1; // of a sampler at the former pace, the last ones
        for (qsizetype i = first; i + 2 < levels.size(); i += 2) {
            QVERIFY(levels[i] > levels[i + 1] && levels[i + 1] < levels[i + 2]);
        }
        f.service.setPace(30);
        QTRY_VERIFY(f.service.bands()[2] < 0.01F);
    }

    void stopsInSilence()
    {
        Fixture f;
        f.service.start();
        f.hardware.play(tone(2048), 1);
        QTRY_VERIFY(f.service.isLive());
        f.hardware.takeCalls();
        for (const int seen = f.clock.questions; f.clock.questions < seen + 3;) {
            std::this_thread::yield(); // until frames wait for this thread
        }
        QSignalSpy frames(&f.service, &AudioCapture::bandsPublished);
        f.service.stop();
        QCOMPARE(f.hardware.takeCalls(), tornDown);
        QVERIFY(!f.service.isRunning());
        QTRY_COMPARE(frames.size(), 1); // the silence, which came behind what was waiting
        QVERIFY(!f.service.isLive() && f.service.bands() == silence);
        f.service.stop();
        QCOMPARE(f.hardware.takeCalls(), QString());
        f.service.start();
        QTRY_VERIFY(f.service.isLive());
    }
};

QTEST_GUILESS_MAIN(CaptureServiceTest)
#include "capture_service_test.moc"
