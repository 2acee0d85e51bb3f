#include "FarSink.h"
#include "SoundServer.h"

#include "audio/AudioCaptureService.h"
#include "audio/AudioDeviceManager.h"
#include "base/EventLoop.h"
#include "linux/pipewire/PipewireAudioHardware.h"
#include "linux/settings/PlistUserDefaults.h"
#include "support/Command.h"
#include "support/LogFile.h"
#include "support/LoopbackServices.h"
#include "support/MprisStandIn.h"

#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPixmap>
#include <QRegularExpression>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

namespace {

constexpr float loud = 0.8F;
constexpr float quiet = 0.05F;
const QString captureNode = QStringLiteral("pellar.capture");
constexpr int pillCenter = 948; // of a fresh installation, from the left of the screen

/// A program, ended with its owner.
class Program
{
public:
    Program(const QString& name, const QStringList& arguments) { _process.start(name, arguments); }
    ~Program()
    {
        _process.kill();
        _process.waitForFinished();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    QProcess* operator->() { return &_process; }

private:
    QProcess _process;
};

Program player(const QString& file, const QString& program = QStringLiteral("pw-play"))
{
    return Program(program, {file});
}

bool areSinksAsleep()
{
    return !run(QStringLiteral("pactl list short sinks"))
                .contains(QRegularExpression(QStringLiteral("RUNNING|IDLE")));
}

QImage topOfScreen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0, 0, 0, 1280, 28).toImage();
}

/// What the server tells the players of the time until they are heard.
QStringList latencies()
{
    QStringList latencies;
    const auto objects = QJsonDocument::fromJson(output(QStringLiteral("pw-dump"), {}).toUtf8()).array();
    for (const auto& object : objects) {
        const QJsonObject info = object[u"info"].toObject();
        if (info[u"props"][u"port.alias"].toString().startsWith(QStringLiteral("pw-play"))) {
            latencies << QString::fromUtf8(QJsonDocument(info[u"params"][u"Latency"].toArray()).toJson());
        }
    }
    return latencies;
}

bool isLinked(const QString& port)
{
    return output(QStringLiteral("pw-link"), {QStringLiteral("--links")}).contains(port);
}

/// Who keeps the pace for whom, by the name of the driver.
QMap<QString, QSet<QString>> followers()
{
    QProcess top;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TERM"), QStringLiteral("vt100"));
    environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("150"));
    top.setProcessEnvironment(environment);
    top.start(QStringLiteral("pw-top"), QStringList());
    QString screens;
    const auto isMeasured = [&] {
        screens += QString::fromUtf8(top.readAllStandardOutput());
        return screens.section(QStringLiteral("NAME"), -2, -2).contains(u'+');
    };
    static_cast<void>(QTest::qWaitFor(isMeasured));
    top.kill();
    top.waitForFinished();
    QMap<QString, QSet<QString>> followers;
    QString driver;
    static const QRegularExpression row(QStringLiteral("(?<=[ H])(\\+ )?([a-z][a-z.-]+)(?=\r)"));
    for (const auto& found : row.globalMatch(screens.section(QStringLiteral("NAME"), -2, -2))) {
        if (found.capturedLength(1) == 0) {
            driver = found.captured(2);
        } else {
            followers[driver] << found.captured(2);
        }
    }
    return followers;
}

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
    void followsStreams();
    void leavesTheSessionAlone();
    void tellsPlayersNothing();
    void joinsNoSinks();
    void isMadeAnewWhenRemoved();
    void survivesRestarts();
    void waitsForServer();
    void restsWhereItIsRefused();
    void isNotHeldUpByTheServer();

private:
    QString tone(const QString& name, const QString& source) const;
    bool isHeard(int band) const { return _service->isLive() && _service->bands()[band] > loud; }
    bool isUnheard(int band) const { return _service->bands()[band] < quiet; }
    bool isStillHeard(int band) const;
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

QString CaptureTest::tone(const QString& name, const QString& source) const
{
    const QString path = _folder.filePath(name);
    output(QStringLiteral("ffmpeg"), {QStringLiteral("-nostdin"), QStringLiteral("-f"),
                                      QStringLiteral("lavfi"), QStringLiteral("-i"), source, path});
    return path;
}

void CaptureTest::init()
{
    _service = std::make_unique<AudioCaptureService>(_hardware, _runLoop);
    _service->start();
}

void CaptureTest::cleanup()
{
    _server.send(SIGCONT);
    if (QTest::currentTestFailed() && _service) {
        qInfo().noquote() << state() << u'\n' << _log.take().join(u'\n');
        qInfo().noquote() << output(QStringLiteral("pw-link"), {QStringLiteral("-l")});
    }
    _service.reset();
    _log.take();
}

/// Also when all that was heard up to now has left the analysis.
bool CaptureTest::isStillHeard(int band) const
{
    constexpr qsizetype framesToForget = 20;
    QSignalSpy frames(_service.get(), &AudioCapture::bandsPublished);
    return QTest::qWaitFor([&] { return frames.size() > framesToForget; }) && isHeard(band);
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
    QTest::addColumn<int>("heard");
    QTest::addColumn<int>("unheard");

    const QString native = QStringLiteral("pw-play");
    QTest::newRow("440 Hz") << native << "sine=440:duration=60:sample_rate=96000" << 1 << 3;
    QTest::newRow("8 kHz, PulseAudio") << "paplay"
                                       << "sine=8000:duration=60:sample_rate=44100" << 3 << 1;
    QTest::newRow("right channel only")
        << native << "aevalsrc=0|0.3*sin(2*PI*8000*t):duration=60:sample_rate=48000" << 3 << 1;
    QTest::newRow("six channels, one at the rear")
        << native << "aevalsrc=0|0|0|0|0.3*sin(2*PI*440*t)|0:channel_layout=5.1:duration=60:sample_rate=48000"
        << 1 << 3;
}

void CaptureTest::hearsTone()
{
    QFETCH(QString, program);
    QFETCH(QString, source);
    QFETCH(int, heard);
    QFETCH(int, unheard);
    QFile::remove(_folder.filePath(QStringLiteral("tone.wav")));
    const Program playing = player(tone(QStringLiteral("tone.wav"), source), program);
    QTRY_VERIFY2(isHeard(heard) && isUnheard(unheard), qPrintable(state()));
}

/// As they come and go and are moved to another sink.
void CaptureTest::followsStreams()
{
    const Program low = player(_low, QStringLiteral("paplay"));
    QTRY_VERIFY(isHeard(1) && isUnheard(3));
    {
        const Program high = player(_high);
        QTRY_VERIFY(isHeard(1) && isHeard(3));
    }
    QTRY_VERIFY(isHeard(1) && isUnheard(3));
    const QString stream = run(QStringLiteral("pactl list short sink-inputs")).section(u'\t', 0, 0);
    const auto sink = [] { return run(QStringLiteral("pactl list short sink-inputs")).section(u'\t', 1, 1); };
    const QString before = sink();
    QTRY_VERIFY((run(QStringLiteral("pactl move-sink-input %1 headphones").arg(stream)), sink() != before));
    QVERIFY(isStillHeard(1));
    const Program high = player(_high); // on the other sink
    QTRY_VERIFY(isHeard(1) && isHeard(3));
}

/// No recording is shown, the sinks still fall asleep, and with them the analysis, until sound returns.
void CaptureTest::leavesTheSessionAlone()
{
    {
        const Program low = player(_low, QStringLiteral("paplay"));
        QTRY_VERIFY(isHeard(1));
        QCOMPARE(run(QStringLiteral("pactl list short source-outputs")), QString());
        QVERIFY(!areSinksAsleep());
    }
    QTRY_VERIFY(isUnheard(1) && !_service->isLive());
    QVERIFY(_service->isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(areSinksAsleep(), 15000);
    QSignalSpy frames(_service.get(), &AudioCapture::bandsPublished);
    QTRY_VERIFY((frames.clear(), !frames.wait(500)));
    const Program low = player(_low);
    QTRY_VERIFY(isHeard(1));
}

/// However far their sinks are.
void CaptureTest::tellsPlayersNothing()
{
    const FarSink far;
    const Program low(QStringLiteral("pw-play"), {QStringLiteral("--target=0"), _low}); // of the session
    const QString farPort = QStringLiteral("far:playback_FL");
    QTRY_VERIFY((output(QStringLiteral("pw-link"), {QStringLiteral("pw-play:output_FL"), farPort}),
                 isLinked(farPort)));
    QTRY_VERIFY(isHeard(1));
    const QStringList told = latencies();
    QVERIFY(told.join(u' ').contains(QStringLiteral("200000000")));
    _service->stop();
    QTRY_VERIFY(!isLinked(captureNode));
    QCOMPARE(told, latencies());
}

/// Each sink keeps the pace for its own player.
void CaptureTest::joinsNoSinks()
{
    const Program low = player(_low);
    const Program high(QStringLiteral("pw-play"), {QStringLiteral("--target=headphones"), _high});
    QTRY_VERIFY(isHeard(1) && isHeard(3));
    const QSet<QString> both = {QStringLiteral("pw-play"), captureNode};
    const QMap<QString, QSet<QString>> apart = {{QStringLiteral("speakers"), both},
                                                {QStringLiteral("headphones"), both}};
    QTRY_COMPARE_WITH_TIMEOUT(followers(), apart, 15'000);
}

void CaptureTest::isMadeAnewWhenRemoved()
{
    const Program low = player(_low);
    QTRY_VERIFY(isHeard(1));
    const auto serial = [] {
        const QString text = output(QStringLiteral("pw-cli"), {QStringLiteral("info"), captureNode});
        return text.split(u'\n').filter(QStringLiteral("object.serial")).value(0);
    };
    const QString before = serial();
    QVERIFY(!before.isEmpty());
    output(QStringLiteral("pw-cli"), {QStringLiteral("destroy"), captureNode});
    QTRY_VERIFY(!serial().isEmpty() && serial() != before);
    QVERIFY(isStillHeard(1));
}

void CaptureTest::survivesRestarts()
{
    constexpr int restarts = 3;
    QTRY_VERIFY(_service->isRunning());
    for (int i = 0; i < restarts; ++i) {
        _server.kill();
        QTRY_VERIFY(isUnheard(1));
        if (i == 1) {
            _service->start(); // as the half-minute retry may, with no server there
        }
        QVERIFY(_server.start());
        if (i == 1) {
            _service->start(); // as when its devices are there
        }
        const Program low = player(_low);
        QTRY_VERIFY2(isHeard(1), qPrintable(state()));
        QVERIFY(_service->isRunning());
    }
}

void CaptureTest::waitsForServer()
{
    _service.reset();
    _server.kill();
    PipewireAudioHardware hardware;
    _service = std::make_unique<AudioCaptureService>(hardware, _runLoop);
    _service->start();
    QStringList lines;
    QTRY_VERIFY((lines += _log.take(),
                 lines.contains(QStringLiteral("AudioCap: requestAccess callback: granted=false"))));
    QVERIFY(!_service->isRunning());
    QVERIFY(_server.start());
    _service->start();
    QTRY_VERIFY(_service->isRunning());
    const Program low = player(_low);
    QTRY_VERIFY(isHeard(1));
    _service.reset();
}

/// A server that lets nobody make links is not asked over and over for its devices.
void CaptureTest::restsWhereItIsRefused()
{
    _server.kill();
    QVERIFY(_server.start(QStringLiteral("link-factory")));
    AudioDeviceManager devices(_hardware);
    connect(&devices, &AudioDeviceManager::devicesChanged, _service.get(), [this] { _service->start(); });
    QTRY_COMPARE(_hardware.authorizationStatus(), int{AudioHardware::restricted});
    const auto connection = [] {
        return output(QStringLiteral("pw-cli"), {QStringLiteral("info"), QStringLiteral("Pellar")});
    };
    const QString before = connection();
    _service->start();
    QCOMPARE(connection(), before);
    _server.kill();
    QVERIFY(_server.start());
    const Program low = player(_low);
    QTRY_VERIFY(isHeard(1));
}

/// The built program starts, moves and quits beside a server that hangs, and hears when that goes on.
void CaptureTest::isNotHeldUpByTheServer()
{
    _service.reset();
    keepServicesToLoopback();
    PlistUserDefaults(PlistUserDefaults::defaultPath())
        .setObject(QStringLiteral("com.orvalen.pellar.audio.live_visualizer_enabled"), true);
    MprisStandIn standIn(QStringLiteral("standin"));
    standIn.change(MprisStandIn::playing(
        MprisStandIn::metadata(QStringLiteral("/t/1"), QStringLiteral("Track"), {}, {}, 200)));
    const QImage desktop = topOfScreen();

    _server.send(SIGSTOP);
    {
        Program pellar(QStringLiteral(PELLAR_PROGRAM), {});
        QTRY_VERIFY(topOfScreen() != desktop);
        for (int i = 0; i < 5; ++i) {
            const QImage before = topOfScreen();
            QTRY_VERIFY(topOfScreen() != before);
        }
        run(QStringLiteral("xdotool mousemove %1 14 click 3").arg(pillCenter));
        QTRY_VERIFY(run(QStringLiteral("xdotool search --onlyvisible --class pellar")).contains(u'\n'));
        run(QStringLiteral("xdotool key Up Return")); // the last row of the menu
        QTRY_COMPARE(pellar->state(), QProcess::NotRunning);
        QVERIFY(pellar->exitStatus() == QProcess::NormalExit && pellar->exitCode() == 0);
    }
    Program pellar(QStringLiteral(PELLAR_PROGRAM), {});
    QTRY_VERIFY(topOfScreen() != desktop);
    _server.send(SIGCONT);
    const Program low = player(_low);
    QTRY_VERIFY(isLinked(captureNode));
    QCOMPARE(pellar->state(), QProcess::Running);
}

QTEST_MAIN(CaptureTest)
#include "capture_test.moc"
