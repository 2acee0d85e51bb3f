#include "OwnTone.h"
#include "SoundServer.h"

#include "audio/AudioCaptureService.h"
#include "base/EventLoop.h"
#include "linux/pipewire/PipewireAudioHardware.h"
#include "support/Command.h"
#include "support/LogFile.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

constexpr float loud = 0.8F;
constexpr float quiet = 0.05F;

QString pactl(const QString& words)
{
    return output(QStringLiteral("pactl"), words.split(u' '));
}

/// A process that plays a file.
class Player
{
public:
    explicit Player(const QString& file, const QString& program = QStringLiteral("pw-play"))
    {
        _process.start(program, {file});
    }
    ~Player()
    {
        _process.kill();
        _process.waitForFinished();
    }

private:
    QProcess _process;
};

} // namespace

/// Real sound, played by real programs through the session's sound server.
class CaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void hearsTone_data();
    void hearsTone();
    void hearsEveryProcess();
    void followsMovedStream();
    void silenceEndsIt();
    void doesNotHearItself();
    void leavesTheSessionAlone();
    void isMadeAnewWhenRemoved();
    void survivesRestarts();
    void waitsForServer();

private:
    QString tone(const QString& name, const QString& source, const QStringList& options = {});
    bool isHeard(int band) const { return _service->isLive() && _service->bands()[band] > loud; }
    bool isUnheard(int band) const { return _service->bands()[band] < quiet; }
    QString state() const;

    QTemporaryDir _folder;
    QString _low;
    QString _high;
    EventLoop _runLoop;
    LogFile _log;
    SoundServer _server;
    PipewireAudioHardware _hardware;
    std::unique_ptr<AudioCaptureService> _service;
};

void CaptureTest::initTestCase()
{
    const QString stereo = QStringLiteral("aevalsrc=%1|%1:duration=60:sample_rate=44100");
    const QString sine = QStringLiteral("0.4*sin(2*PI*%1*t)");
    _low = tone(QStringLiteral("low.wav"), stereo.arg(sine.arg(440)));
    _high = tone(QStringLiteral("high.wav"), stereo.arg(sine.arg(8000)));
}

QString CaptureTest::tone(const QString& name, const QString& source, const QStringList& options)
{
    const QString path = _folder.filePath(name);
    QStringList arguments = {QStringLiteral("-nostdin"),
                             QStringLiteral("-loglevel"),
                             QStringLiteral("error"),
                             QStringLiteral("-f"),
                             QStringLiteral("lavfi"),
                             QStringLiteral("-i"),
                             source};
    QProcess::execute(QStringLiteral("ffmpeg"), arguments + options + QStringList{path});
    return path;
}

void CaptureTest::init()
{
    _service = std::make_unique<AudioCaptureService>(_hardware, _runLoop);
    _service->start();
}

void CaptureTest::cleanup()
{
    if (QTest::currentTestFailed()) {
        qInfo().noquote() << state() << u'\n' << _log.take().join(u'\n');
        qInfo().noquote() << output(QStringLiteral("pw-link"), {QStringLiteral("-l")});
    }
    _service.reset();
    _log.take();
}

QString CaptureTest::state() const
{
    QStringList levels;
    for (const float level : _service->bands()) {
        levels << QString::number(level, 'f', 3);
    }
    return QStringLiteral("live %1, bands %2").arg(_service->isLive()).arg(levels.join(u' '));
}

void CaptureTest::hearsTone_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("heard");
    QTest::addColumn<int>("unheard");

    const QString native = QStringLiteral("pw-play");
    const QString pulse = QStringLiteral("paplay");
    const QStringList plain;
    const QString mono = QStringLiteral("sine=%1:duration=60:sample_rate=%2");
    const QString right = QStringLiteral("aevalsrc=0|0.3*sin(2*PI*8000*t):duration=60:sample_rate=48000");
    const QString rear = QStringLiteral(
        "aevalsrc=0|0|0|0|0.3*sin(2*PI*440*t)|0:channel_layout=5.1:duration=60:sample_rate=48000");
    QTest::newRow("440 Hz") << native << mono.arg(440).arg(48000) << plain << 1 << 3;
    QTest::newRow("8 kHz") << native << mono.arg(8000).arg(48000) << plain << 3 << 1;
    QTest::newRow("440 Hz, PulseAudio") << pulse << mono.arg(440).arg(44100) << plain << 1 << 3;
    QTest::newRow("8 kHz, PulseAudio") << pulse << mono.arg(8000).arg(44100) << plain << 3 << 1;
    QTest::newRow("float, 96 kHz") << native << mono.arg(8000).arg(96000)
                                   << QStringList{QStringLiteral("-c:a"), QStringLiteral("pcm_f32le")} << 3
                                   << 1;
    QTest::newRow("8 bits, 8 kHz") << native << mono.arg(440).arg(8000)
                                   << QStringList{QStringLiteral("-c:a"), QStringLiteral("pcm_u8")} << 1 << 3;
    QTest::newRow("right channel only") << native << right << plain << 3 << 1;
    QTest::newRow("six channels, one at the rear") << native << rear << plain << 1 << 3;
}

void CaptureTest::hearsTone()
{
    QFETCH(QString, program);
    QFETCH(QString, source);
    QFETCH(QStringList, options);
    QFETCH(int, heard);
    QFETCH(int, unheard);
    QFile::remove(_folder.filePath(QStringLiteral("tone.wav")));
    const Player player(tone(QStringLiteral("tone.wav"), source, options), program);
    QTRY_VERIFY2(isHeard(heard) && isUnheard(unheard), qPrintable(state()));
}

void CaptureTest::hearsEveryProcess()
{
    const Player low(_low);
    QTRY_VERIFY(isHeard(1) && isUnheard(3));
    {
        const Player high(_high, QStringLiteral("paplay"));
        QTRY_VERIFY(isHeard(1) && isHeard(3));
    }
    QTRY_VERIFY(isHeard(1) && isUnheard(3));
}

void CaptureTest::followsMovedStream()
{
    const Player player(_low, QStringLiteral("paplay"));
    QTRY_VERIFY(isHeard(1));
    const QString input = pactl(QStringLiteral("list short sink-inputs")).section(u'\t', 0, 0);
    const auto sinks = pactl(QStringLiteral("list short sinks")).split(u'\n');
    const QString headphones = sinks.filter(QStringLiteral("headphones")).value(0).section(u'\t', 0, 0);
    const auto sinkOfStream = [] {
        return pactl(QStringLiteral("list short sink-inputs")).section(u'\t', 1, 1);
    };
    QTRY_COMPARE((pactl(QStringLiteral("move-sink-input %1 headphones").arg(input)), sinkOfStream()),
                 headphones);
    QTest::qWait(500); // by now, what was heard before has left the analysis
    QTRY_VERIFY(isHeard(1));
    const Player other(_high); // on the other sink
    QTRY_VERIFY(isHeard(1) && isHeard(3));
}

void CaptureTest::silenceEndsIt()
{
    {
        const Player player(_low);
        QTRY_VERIFY(isHeard(1));
    }
    QTRY_VERIFY(isUnheard(1));
    QTRY_VERIFY(!_service->isLive());
}

void CaptureTest::doesNotHearItself()
{
    QTRY_VERIFY(_service->isRunning());
    const OwnTone own;
    QTRY_VERIFY(own.isPlaying());
    const Player player(_low); // proof that it can hear at the same time
    QTRY_VERIFY(isHeard(1));
    float loudest = 0;
    connect(_service.get(), &AudioCapture::bandsPublished, this,
            [&](const QList<float>& bands) { loudest = std::max(loudest, bands[2]); });
    QTest::qWait(500);
    _service->disconnect(this);
    QVERIFY2(own.isPlaying() && loudest < quiet, qPrintable(QString::number(loudest)));
}

/// No recording is shown, the sinks still fall asleep, and with them the analysis, until sound returns.
void CaptureTest::leavesTheSessionAlone()
{
    {
        const Player player(_low, QStringLiteral("paplay"));
        QTRY_VERIFY(isHeard(1));
        QCOMPARE(pactl(QStringLiteral("list short source-outputs")), QString());
        QVERIFY(pactl(QStringLiteral("list short sinks")).contains(QStringLiteral("RUNNING")));
    }
    QVERIFY(_service->isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(!pactl(QStringLiteral("list short sinks"))
                                  .contains(QRegularExpression(QStringLiteral("RUNNING|IDLE"))),
                             15000);
    QSignalSpy frames(_service.get(), &AudioCapture::bandsPublished);
    QTRY_VERIFY((frames.clear(), !frames.wait(500)));
    const Player player(_low);
    QTRY_VERIFY(isHeard(1));
}

void CaptureTest::isMadeAnewWhenRemoved()
{
    const Player player(_low);
    QTRY_VERIFY(isHeard(1));
    const auto serial = [] {
        const QString text =
            output(QStringLiteral("pw-cli"), {QStringLiteral("info"), QStringLiteral("pellar.capture")});
        return text.split(u'\n').filter(QStringLiteral("object.serial")).value(0);
    };
    const QString before = serial();
    QVERIFY(!before.isEmpty());
    output(QStringLiteral("pw-cli"), {QStringLiteral("destroy"), QStringLiteral("pellar.capture")});
    QTRY_VERIFY(!serial().isEmpty() && serial() != before);
    QTest::qWait(500); // by now, what was heard before has left the analysis
    QTRY_VERIFY(isHeard(1));
}

void CaptureTest::survivesRestarts()
{
    constexpr int restarts = 20;
    QTRY_VERIFY(_service->isRunning());
    for (int i = 0; i < restarts; ++i) {
        _server.kill();
        QTRY_VERIFY(isUnheard(1));
        if (i % 2 == 1) {
            _service->start(); // as the half-minute retry may, with no server there
        }
        QVERIFY2(_server.start(), qPrintable(QStringLiteral("restart %1").arg(i)));
        const Player player(_low);
        QTRY_VERIFY2(isHeard(1), qPrintable(QStringLiteral("restart %1: %2").arg(i).arg(state())));
        QVERIFY(_service->isRunning());
    }
}

void CaptureTest::waitsForServer()
{
    _service.reset();
    _server.kill();
    PipewireAudioHardware hardware;
    AudioCaptureService service(hardware, _runLoop);
    service.start();
    QStringList lines;
    QTRY_VERIFY((lines += _log.take(),
                 lines.contains(QStringLiteral("AudioCap: requestAccess callback: granted=false"))));
    QVERIFY(!service.isRunning());
    QVERIFY(_server.start());
    service.start();
    QTRY_VERIFY(service.isRunning());
    const Player player(_low);
    QTRY_VERIFY(service.isLive() && service.bands()[1] > loud);
    _service = std::make_unique<AudioCaptureService>(_hardware, _runLoop); // for the cleanup
}

QTEST_GUILESS_MAIN(CaptureTest)
#include "capture_test.moc"
