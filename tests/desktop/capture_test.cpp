#include "FarSink.h"
#include "SoundServer.h"

#include "audio/AudioCaptureService.h"
#include "audio/AudioDeviceManager.h"
#include "base/EventLoop.h"
#include "linux/pipewire/PipewireAudioHardware.h"
#include "linux/settings/PlistUserDefaults.h"
#include "support/LogFile.h"
#include "support/LoopbackServices.h"
#include "support/MprisStandIn.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QtTest>

namespace {

constexpr float loud = 0.8F;
constexpr float quiet = 0.05F;
const QString captureNode = u"pellar.capture"_s;
constexpr int pillCenter = 948; // of a fresh installation, from the left of the screen

QImage topOfScreen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0, 0, 0, 1280, 28).toImage();
}

/// What the server tells the players of the time until they are heard.
QStringList latencies()
{
    QStringList latencies;
    const auto objects = QJsonDocument::fromJson(run(u"pw-dump"_s).toUtf8()).array();
    for (const auto& object : objects) {
        const QJsonObject info = object[u"info"].toObject();
        if (info[u"props"][u"port.alias"].toString().startsWith(u"pw-play"_s)) {
            latencies << QString::fromUtf8(QJsonDocument(info[u"params"][u"Latency"].toArray()).toJson());
        }
    }
    return latencies;
}

bool isLinked(const QString& port)
{
    return run(u"pw-link --links"_s).contains(port);
}

/// Who keeps the pace for whom, by the name of the driver.
QMap<QString, QSet<QString>> followers()
{
    Program top(u"env"_s, {u"TERM=vt100"_s, u"COLUMNS=150"_s, u"pw-top"_s});
    QString screens;
    const auto isMeasured = [&] {
        screens += QString::fromUtf8(top.readAllStandardOutput());
        return screens.section(u"NAME"_s, -2, -2).contains(u'+');
    };
    static_cast<void>(QTest::qWaitFor(isMeasured));
    QMap<QString, QSet<QString>> followers;
    QString driver;
    static const QRegularExpression row(u"(?<=[ H])(\\+ )?([a-z][a-z.-]+)(?=\r)"_s);
    for (const auto& found : row.globalMatch(screens.section(u"NAME"_s, -2, -2))) {
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
    void initTestCase()
    {
        const QString make = u"ffmpeg -nostdin -f lavfi -i aevalsrc="_s;
        run(make + u"0|0|0|0|0.4*sin(2*PI*440*t)|0:channel_layout=5.1:duration=60 " + _low);
        run(make + u"0|0.4*sin(2*PI*8000*t):duration=60:sample_rate=96000 " + _high);
    }

    void init()
    {
        _service = std::make_unique<AudioCaptureService>(_hardware, _runLoop);
        _service->start();
    }

    void cleanup()
    {
        _server.send(SIGCONT);
        if (QTest::currentTestFailed() && _service) {
            qInfo().noquote() << _service->bands() << _log.take().join(u'\n');
            qInfo().noquote() << run(u"pw-link -l"_s);
        }
        _service.reset();
        _log.take();
    }

    void switchesDevicesBothWays()
    {
        QTRY_COMPARE(sinks(), u"speakers* headphones"_s);
        const auto devices = _devices.outputDevices();
        QCOMPARE(devices.constFirst().name, u"Speakers"_s);
        _devices.setOutput(devices.constLast().id);
        QTRY_COMPARE(run(u"pactl get-default-sink"_s), u"headphones"_s);
        QTRY_COMPARE(sinks(), u"speakers headphones*"_s);
        _devices.setOutput(0);
        _devices.setOutput(devices.constFirst().id + 10'000);
        run(u"pactl set-default-sink speakers"_s); // by somebody else
        QTRY_COMPARE(sinks(), u"speakers* headphones"_s);
    }

    /// But no microphones.
    void followsDevices()
    {
        const QString load = u"pactl load-module module-null-sink "_s;
        const QString microphone = run(load + u"media.class=Audio/Source sink_name=microphone");
        QTRY_VERIFY(run(u"pactl list short sources"_s).contains(u"microphone"_s));
        const QString kitchen = run(load + u"sink_name=kitchen sink_properties=device.description=Küche");
        QTRY_COMPARE(sinks(), u"speakers* headphones kitchen"_s);
        QCOMPARE(_devices.outputDevices().constLast().name, u"Küche"_s);
        _devices.setOutput(_devices.outputDevices().constLast().id);
        QTRY_COMPARE(sinks(), u"speakers headphones kitchen*"_s);
        run(u"pactl unload-module "_s + kitchen);
        run(u"pactl unload-module "_s + microphone);
        QTRY_VERIFY(sinks() == u"speakers* headphones" || sinks() == u"speakers headphones*");
        run(u"pactl set-default-sink speakers"_s);
    }

    /// As they come and go and are moved to another sink, and no recording is shown.
    void followsStreams()
    {
        const Program low(u"paplay"_s, {_low});
        QTRY_VERIFY(isHeard(1) && isUnheard(3));
        QCOMPARE(run(u"pactl list short source-outputs"_s), QString());
        {
            const Program high(u"pw-play"_s, {_high});
            QTRY_VERIFY(isHeard(1) && isHeard(3));
        }
        QTRY_VERIFY(isHeard(1) && isUnheard(3));
        const QString stream = run(u"pactl list short sink-inputs"_s).section(u'\t', 0, 0);
        const auto sink = [] { return run(u"pactl list short sink-inputs"_s).section(u'\t', 1, 1); };
        const QString before = sink();
        QTRY_VERIFY((run(u"pactl move-sink-input %1 headphones"_s.arg(stream)), sink() != before));
        QVERIFY(isStillHeard(1));
        const Program high(u"pw-play"_s, {_high}); // on the other sink
        QTRY_VERIFY(isHeard(1) && isHeard(3));
    }

    /// However far their sinks are.
    void tellsPlayersNothing()
    {
        const FarSink far;
        const Program low(u"pw-play"_s, {u"--target=0"_s, _low}); // of the session
        const QString farPort = u"far:playback_FL"_s;
        QTRY_VERIFY((run(u"pw-link pw-play:output_FL "_s + farPort), isLinked(farPort)));
        QTRY_VERIFY(isHeard(1));
        const QStringList told = latencies();
        QVERIFY(told.join(u' ').contains(u"200000000"_s));
        _service->stop();
        QTRY_VERIFY(!isLinked(captureNode));
        QCOMPARE(told, latencies());
    }

    /// Each sink keeps the pace for its own player, also when a node of the capture was removed.
    void joinsNoSinks()
    {
        const Program low(u"pw-play"_s, {_low});
        const Program high(u"pw-play"_s, {u"--target=headphones"_s, _high});
        QTRY_VERIFY(isHeard(1) && isHeard(3));
        const QSet<QString> both = {u"pw-play"_s, captureNode};
        const QMap<QString, QSet<QString>> apart = {{u"speakers"_s, both}, {u"headphones"_s, both}};
        QTRY_COMPARE_WITH_TIMEOUT(followers(), apart, 15'000);
        const auto serial = [] {
            return run(u"pw-cli info "_s + captureNode).section(u"object.serial"_s, 1).section(u'\n', 0, 0);
        };
        const QString before = serial();
        QVERIFY(!before.isEmpty());
        run(u"pw-cli destroy "_s + captureNode);
        QTRY_VERIFY(!serial().isEmpty() && serial() != before);
        QVERIFY(forgetsTheOld());
        QTRY_VERIFY(isHeard(1) && isHeard(3));
    }

    /// And asks for permission before there is a server.
    void survivesRestarts()
    {
        QTRY_VERIFY(_service->isRunning());
        for (const bool isRetried : {false, true, false}) {
            _server.kill();
            QTRY_VERIFY(isUnheard(1) && sinks().isEmpty());
            QCOMPARE(_devices.currentOutput(), 0U);
            QStringList log;
            PipewireAudioHardware late;
            AudioCaptureService lateService(late, _runLoop);
            lateService.start();
            if (isRetried) {
                _service->start(); // as every half minute
            }
            const auto denial = u"AudioCap: requestAccess callback: granted=false"_s;
            QTRY_VERIFY((log += _log.take()).contains(denial));
            QVERIFY(_server.start());
            if (isRetried) {
                _service->start(); // as when its devices are there
            }
            const Program low(u"pw-play"_s, {_low});
            QTRY_VERIFY(isHeard(1));
            QVERIFY(_service->isRunning() && !lateService.isRunning());
            lateService.start();
            QTRY_VERIFY(lateService.bands()[1] > loud);
            QTRY_COMPARE_WITH_TIMEOUT(sinks(), u"speakers* headphones"_s, 10'000);
        }
    }

    /// A server that lets nobody make links is not asked over and over for its devices.
    void restsWhereItIsRefused()
    {
        _server.kill();
        QVERIFY(_server.start("link-factory"));
        connect(&_devices, &AudioDeviceManager::devicesChanged, _service.get(),
                [this] { _service->start(); });
        QTRY_COMPARE(_hardware.authorizationStatus(), int{AudioHardware::restricted});
        const QString before = run(u"pw-cli info Pellar"_s);
        _service->start();
        QCOMPARE(run(u"pw-cli info Pellar"_s), before);
        _server.kill();
        QVERIFY(_server.start());
        const Program low(u"pw-play"_s, {_low});
        QTRY_VERIFY(isHeard(1));
    }

    /// The built program starts, moves and quits beside a server that hangs, and hears when that goes on.
    void isNotHeldUpByTheServer()
    {
        _service.reset();
        keepServicesToLoopback();
        PlistUserDefaults(PlistUserDefaults::defaultPath())
            .setObject(u"com.orvalen.pellar.audio.live_visualizer_enabled"_s, true);
        MprisStandIn standIn(u"standin"_s);
        standIn.change(MprisStandIn::playing(MprisStandIn::metadata(u"/t/1"_s, u"Track"_s, {}, {}, 200)));
        const QImage desktop = topOfScreen();

        _server.send(SIGSTOP);
        {
            const Program pellar(QStringLiteral(PELLAR_PROGRAM));
            QTRY_VERIFY(topOfScreen() != desktop);
            for (int i = 0; i < 5; ++i) {
                const QImage before = topOfScreen();
                QTRY_VERIFY(topOfScreen() != before);
            }
            run(u"xdotool mousemove %1 14 click 3"_s.arg(pillCenter));
            QTRY_VERIFY(run(u"xdotool search --onlyvisible --class pellar"_s).contains(u'\n'));
            run(u"xdotool key Up Return"_s); // the last row of the menu
            QTRY_COMPARE(pellar.state(), QProcess::NotRunning);
            QVERIFY(pellar.exitStatus() == QProcess::NormalExit && pellar.exitCode() == 0);
        }
        const Program pellar(QStringLiteral(PELLAR_PROGRAM));
        QTRY_VERIFY(topOfScreen() != desktop);
        _server.send(SIGCONT);
        const Program low(u"pw-play"_s, {_low});
        QTRY_VERIFY(isLinked(captureNode));
        QCOMPARE(pellar.state(), QProcess::Running);
    }

private:
    bool isHeard(int band) const { return _service->isLive() && _service->bands()[band] > loud; }
    bool isUnheard(int band) const { return _service->bands()[band] < quiet; }

    /// Waits until all that was heard up to now has left the analysis.
    bool forgetsTheOld() const
    {
        constexpr qsizetype framesToForget = 20;
        QSignalSpy frames(_service.get(), &AudioCapture::bandsPublished);
        return QTest::qWaitFor([&] { return frames.size() > framesToForget; });
    }
    bool isStillHeard(int band) const { return forgetsTheOld() && isHeard(band); }

    /// Those that are listed, with a star behind the current one.
    QString sinks() const
    {
        QStringList uids;
        for (const AudioOutputDevice& device : _devices.outputDevices()) {
            uids << device.uid + (device.id == _devices.currentOutput() ? u"*"_s : QString());
        }
        return uids.join(u' ');
    }

    QTemporaryDir _folder;
    const QString _low = _folder.filePath(u"low.wav"_s);   ///< 440 Hz, one of six channels, at the rear
    const QString _high = _folder.filePath(u"high.wav"_s); ///< 8 kHz, only on the right
    EventLoop _runLoop;
    LogFile _log;
    SoundServer _server;
    PipewireAudioHardware _hardware;
    AudioDeviceManager _devices{_hardware};
    std::unique_ptr<AudioCaptureService> _service;
};

QTEST_MAIN(CaptureTest)
#include "capture_test.moc"
