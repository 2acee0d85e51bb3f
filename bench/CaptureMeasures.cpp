#include "CaptureMeasures.h"

#include "PillWatch.h"
#include "ProcessMeter.h"
#include "Table.h"

#include "linux/settings/PlistUserDefaults.h"
#include "prefs/PowerMode.h"
#include "prefs/PowerModeManager.h"
#include "support/Command.h"
#include "support/RealPlayer.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString enabledKey = QStringLiteral("com.orvalen.pellar.audio.live_visualizer_enabled");
const QString sourcesKey = QStringLiteral("pellar.audio.sources");
constexpr double watched = 20; // seconds

/// The program with live capture on, in a power mode.
class CapturingProgram
{
public:
    CapturingProgram(PowerMode mode, qlonglong sources)
    {
        PlistUserDefaults settings(PlistUserDefaults::defaultPath());
        settings.setObject(enabledKey, true);
        settings.setObject(sourcesKey, sources);
        settings.setObject(PowerModeManager::kManualMode, rawValue(mode));
        _process.start(QStringLiteral(PELLAR_PROGRAM), QStringList());
    }
    ~CapturingProgram()
    {
        _process.terminate();
        _process.waitForFinished();
        PlistUserDefaults settings(PlistUserDefaults::defaultPath());
        for (const QString& key : {enabledKey, sourcesKey, PowerModeManager::kManualMode}) {
            settings.removeObject(key);
        }
    }
    CapturingProgram(const CapturingProgram&) = delete;
    CapturingProgram& operator=(const CapturingProgram&) = delete;

    ProcessMeter meter() const { return ProcessMeter(_process.processId()); }

private:
    QProcess _process;
};

/// A noise in all bands.
class Noise
{
public:
    Noise()
    {
        const QString file = _folder.filePath(QStringLiteral("noise.wav"));
        output(QStringLiteral("ffmpeg"),
               {QStringLiteral("-nostdin"), QStringLiteral("-loglevel"), QStringLiteral("error"),
                QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                QStringLiteral("anoisesrc=duration=90:amplitude=0.2:sample_rate=48000"), file});
        _process.start(QStringLiteral("pw-play"), {file});
    }
    ~Noise()
    {
        _process.kill();
        _process.waitForFinished();
    }
    Noise(const Noise&) = delete;
    Noise& operator=(const Noise&) = delete;

private:
    QTemporaryDir _folder;
    QProcess _process;
};

/// A program that analyses what is played, too: four bars at 30 frames, drawn nowhere.
class Cava
{
public:
    Cava()
    {
        QFile file(_folder.filePath(QStringLiteral("config")));
        if (file.open(QIODevice::WriteOnly)) {
            file.write("[general]\nbars = 4\nframerate = 30\n[input]\nmethod = pulse\nsource = auto\n"
                       "[output]\nmethod = raw\nchannels = mono\nraw_target = /dev/null\n");
        }
        file.close();
        _process.start(QStringLiteral("cava"), {QStringLiteral("-p"), file.fileName()});
    }
    ~Cava()
    {
        _process.terminate();
        _process.waitForFinished();
    }
    Cava(const Cava&) = delete;
    Cava& operator=(const Cava&) = delete;

    ProcessMeter meter() const { return ProcessMeter(_process.processId()); }

private:
    QTemporaryDir _folder;
    QProcess _process;
};

QString loadText(const ProcessMeter::Load& load)
{
    return QStringLiteral("%1 %, %2 wake-ups/s")
        .arg(QString::number(load.processor, 'f', 2), QString::number(load.wakeUpsASecond, 'f', 1));
}

bool isCapturing()
{
    return output(QStringLiteral("pw-cli"), {QStringLiteral("ls"), QStringLiteral("Node")})
        .contains(QStringLiteral("pellar.capture"));
}

bool areSinksAsleep()
{
    const QString sinks = output(QStringLiteral("pactl"),
                                 {QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sinks")});
    return !sinks.contains(QStringLiteral("RUNNING")) && !sinks.contains(QStringLiteral("IDLE"));
}

void measurePlaying(const PillWatch& pill, PowerMode mode, const QString& what, const QString& reach)
{
    constexpr qlonglong players = 3;
    RealPlayer::tell(QStringLiteral("play"));
    const Noise noise;
    const CapturingProgram program(mode, players);
    const bool isReady = PillWatch::millisecondsUntil([&] { return pill.isDrawn() && isCapturing(); }) >= 0;
    QTest::qWait(3000);
    Table::row(what, loadText(program.meter().watch(watched)), reach,
               isReady ? QString() : QStringLiteral("it captured nothing"));
}

void measureCava()
{
    const Noise noise;
    const Cava cava;
    QTest::qWait(3000);
    Table::row(QStringLiteral("cava, four bars at 30 fps into nothing"),
               loadText(cava.meter().watch(watched)), QString());
}

/// Everything is paused, and the program listens for sound of whatever program.
void measureListening(const PillWatch& pill)
{
    constexpr qlonglong all = 7;
    RealPlayer::tell(QStringLiteral("pause"));
    const CapturingProgram program(PowerMode::normal, all);
    const bool isReady =
        PillWatch::millisecondsUntil([&] { return pill.isDrawn() && areSinksAsleep(); }) >= 0;
    QTest::qWait(3000);
    const QString load = loadText(program.meter().watch(watched));
    const Noise noise;
    const bool isListening = PillWatch::millisecondsUntil(isCapturing) >= 0;
    Table::row(QStringLiteral("processor, paused, listening for system audio"), load, QStringLiteral("0.1 %"),
               isReady && isListening ? QString()
                                      : QStringLiteral("it does not listen, or the sinks are awake"));
}

} // namespace

void CaptureMeasures::measureCapture(const PillWatch& pill)
{
    measurePlaying(pill, PowerMode::normal, QStringLiteral("processor, playing, live capture, 15 fps"),
                   QStringLiteral("1.3 %"));
    measurePlaying(pill, PowerMode::powerUser, QStringLiteral("processor, playing, live capture, 30 fps"),
                   QStringLiteral("1.5 %"));
    measureCava();
    measureListening(pill);
}
