#include "AccountMeasures.h"
#include "CaptureMeasures.h"
#include "LyricsMeasures.h"
#include "PillWatch.h"
#include "PreviewMeasures.h"
#include "ProcessMeter.h"
#include "Table.h"

#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "audio/PlayerChoice.h"
#include "audio/SpectrumAnalyzer.h"
#include "base/DebugLog.h"
#include "engine/NowPlayingService.h"
#include "linux/LinuxPlatform.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"
#include "support/LoopbackServices.h"
#include "support/MemoryDefaults.h"
#include "support/MprisStandIn.h"
#include "support/RealPlayer.h"
#include "ui/QmlModules.h"

#include <QApplication>
#include <QDBusInterface>
#include <QElapsedTimer>
#include <QProcess>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <utility>

namespace {

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? -1 : values[values.size() / 2];
}

QString figure(double value, const char* unit, int decimals = 1)
{
    return QString::number(value, 'f', decimals) + u' ' + QString::fromUtf8(unit);
}

/// The program, started and on screen.
bool start(QProcess& program, const PillWatch& pill)
{
    program.start(QStringLiteral(PELLAR_PROGRAM), QStringList());
    return PillWatch::millisecondsUntil([&] { return pill.isDrawn(); }) >= 0;
}

void stop(QProcess& program)
{
    program.terminate();
    program.waitForFinished();
}

void measureAnalysisFrame()
{
    SpectrumAnalyzer analyzer;
    SpectrumAnalyzer::Samples samples;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(std::sin(static_cast<double>(i * i) * 1e-3));
    }
    constexpr int frames = 20000;
    float sum = 0;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < frames; ++i) {
        sum += analyzer.analyze(samples, 48000).bands[1];
    }
    const double frame = static_cast<double>(timer.nsecsElapsed()) / 1e3 / frames;
    Table::row(QStringLiteral("one analysis frame"), figure(frame, "µs", 2), QStringLiteral("5 µs"),
               sum > 0 ? QString() : QStringLiteral("it heard nothing"));
}

void measureStatusPoll()
{
    const QTemporaryDir folder;
    DebugLog::shared().setPath(folder.filePath(QStringLiteral("log")));
    MemoryDefaults defaults;
    const PlayerChoice casting(defaults);
    LinuxPlatform linux(casting);
    AudioBridge audio(linux.ports().runLoop, defaults, nullptr);
    AudioSourceManager sources(defaults, linux.ports().notifications, audio);
    PowerModeManager power(defaults, linux.ports().power);
    ThemeManager theme(defaults);
    RecentlyPlayedManager recentlyPlayed(defaults, linux.ports().runLoop);
    defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                       QStringLiteral("http://127.0.0.1:1"));
    NowPlayingService service({.platform = linux.ports(),
                               .defaults = defaults,
                               .sources = sources,
                               .audio = audio,
                               .power = power,
                               .theme = theme,
                               .recentlyPlayed = recentlyPlayed});
    if (!QTest::qWaitFor([&] { return service.isPlaying(); })) {
        Table::row(QStringLiteral("one status poll"), QStringLiteral("no player"), QString());
        return;
    }
    constexpr int polls = 5000;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < polls; ++i) {
        service.refresh();
    }
    const double poll = static_cast<double>(timer.nsecsElapsed()) / 1e3 / polls;

    QDBusInterface properties(QStringLiteral("org.mpris.MediaPlayer2.mpv"),
                              QStringLiteral("/org/mpris/MediaPlayer2"),
                              QStringLiteral("org.freedesktop.DBus.Properties"));
    constexpr int calls = 300;
    timer.restart();
    for (int i = 0; i < calls; ++i) {
        properties.call(QStringLiteral("GetAll"), QStringLiteral("org.mpris.MediaPlayer2.Player"));
    }
    const double call = static_cast<double>(timer.nsecsElapsed()) / 1e3 / calls;
    DebugLog::shared().flush();
    Table::row(QStringLiteral("one status poll, script text to state"), figure(poll, "µs"),
               QStringLiteral("10 µs"),
               QStringLiteral("asking the player itself: %1 (ratio %2)")
                   .arg(figure(call, "µs"), figure(poll / call, "", 3)));
}

void measureStart(const PillWatch& pill)
{
    QList<double> times;
    for (int i = 0; i < 7; ++i) {
        QProcess program;
        QElapsedTimer timer;
        timer.start();
        if (start(program, pill)) {
            times << static_cast<double>(timer.nsecsElapsed()) / 1e6;
        }
        stop(program);
        PillWatch::millisecondsUntil([&] { return !pill.isDrawn(); });
    }
    Table::row(QStringLiteral("start of the process to the pill on screen"),
               QStringLiteral("%1 (worst %2)")
                   .arg(figure(median(times), "ms", 0),
                        figure(*std::max_element(times.begin(), times.end()), "ms", 0)),
               QStringLiteral("110 ms"));
}

/// The same player is watched by `playerctl --follow`: what it prints first, and what the pill shows first.
void measureChange(const PillWatch& pill)
{
    MprisStandIn player(QStringLiteral("standin"));
    QProcess follower;
    follower.start(QStringLiteral("playerctl"),
                   {QStringLiteral("--player=standin"), QStringLiteral("--follow"),
                    QStringLiteral("metadata"), QStringLiteral("title")});
    QTest::qWait(1000);
    QList<double> pillTimes;
    QList<double> followerTimes;
    for (int i = 0; i < 40; ++i) {
        QTest::qWait(50);
        const QImage before = pill.title();
        follower.readAll();
        double printed = -1;
        QElapsedTimer timer;
        timer.start();
        player.change(MprisStandIn::playing(
            MprisStandIn::metadata(QStringLiteral("/t/%1").arg(i), QStringLiteral("Track %1").arg(i),
                                   QStringLiteral("Band"), QStringLiteral("Album"), 200)));
        double shown = -1;
        PillWatch::millisecondsUntil([&] {
            const double now = static_cast<double>(timer.nsecsElapsed()) / 1e6;
            if (printed < 0 && follower.bytesAvailable() > 0) {
                printed = now;
            }
            if (shown < 0 && pill.title() != before) {
                shown = now;
            }
            return printed >= 0 && shown >= 0;
        });
        pillTimes << shown;
        followerTimes << printed;
    }
    stop(follower);
    Table::row(QStringLiteral("a player's change to the pill showing it"),
               QStringLiteral("%1 (worst %2)")
                   .arg(figure(median(pillTimes), "ms"),
                        figure(*std::max_element(pillTimes.begin(), pillTimes.end()), "ms")),
               QStringLiteral("16 ms"),
               QStringLiteral("playerctl --follow prints it: %1 (worst %2)")
                   .arg(figure(median(followerTimes), "ms"),
                        figure(*std::max_element(followerTimes.begin(), followerTimes.end()), "ms")));
}

void measureFootprint(const PillWatch& pill, const QProcess& program)
{
    constexpr double seconds = 30;
    QProcess follower;
    follower.start(QStringLiteral("playerctl"),
                   {QStringLiteral("--player=mpv"), QStringLiteral("--follow"), QStringLiteral("metadata")});
    RealPlayer::tell(QStringLiteral("play"));
    QTest::qWait(2000);
    const ProcessMeter meter(program.processId());
    const ProcessMeter followerMeter(follower.processId());
    const auto loadText = [](const ProcessMeter::Load& load) {
        return QStringLiteral("%1, %2").arg(figure(load.processor, "%", 2),
                                            figure(load.wakeUpsASecond, "wake-ups/s"));
    };
    Table::row(QStringLiteral("processor, playing, without capture"), loadText(meter.watch(seconds)),
               QStringLiteral("1 %, 45/s"));
    RealPlayer::tell(QStringLiteral("pause"));
    QTest::qWait(1000);
    Table::row(QStringLiteral("processor, paused"), loadText(meter.watch(seconds)), QStringLiteral("0.1 %"));
    Table::row(QStringLiteral("resident memory, pill shown"), figure(meter.residentMegabytes(), "MB"),
               QStringLiteral("45 MB"),
               QStringLiteral("playerctl --follow: %1").arg(figure(followerMeter.residentMegabytes(), "MB")));
    stop(follower);

    MprisStandIn player(QStringLiteral("standin"));
    const auto changeTracks = [&](int from, int count) {
        for (int i = from; i < from + count; ++i) {
            player.change(MprisStandIn::playing(MprisStandIn::metadata(
                QStringLiteral("/t/%1").arg(i), QStringLiteral("Track number %1").arg(i),
                QStringLiteral("Band"), QStringLiteral("Album"), 200)));
            QTest::qWait(20);
        }
    };
    constexpr int changes = 1000;
    changeTracks(0, changes);
    const double before = meter.residentMegabytes();
    changeTracks(changes, 2 * changes);
    Table::row(QStringLiteral("growth over 2000 further track changes"),
               figure(meter.residentMegabytes() - before, "MB", 2), QStringLiteral("flat"),
               pill.isDrawn() ? QString() : QStringLiteral("the pill is gone"));
}

void measurePill(const PillWatch& pill)
{
    QProcess program;
    if (!start(program, pill)) {
        Table::row(QStringLiteral("the pill"), QStringLiteral("it did not appear"), {});
        return;
    }
    measureChange(pill);
    measureFootprint(pill, program);
    stop(program);
}

/// Sixty tracks, each with a cover of its own in a file, as large as shops sell them.
void measureCovers(const PillWatch& pill)
{
    constexpr int covers = 60;
    constexpr int side = 1200; // pixels
    const QTemporaryDir folder;
    QProcess program;
    if (!start(program, pill)) {
        Table::row(QStringLiteral("resident memory after sixty covers"),
                   QStringLiteral("the pill did not appear"), {});
        return;
    }
    const ProcessMeter meter(program.processId());
    QTest::qWait(1000);
    const double before = meter.residentMegabytes();
    MprisStandIn player(QStringLiteral("standin"));
    for (int i = 0; i < covers; ++i) {
        QImage cover(side, side, QImage::Format_RGB32);
        cover.fill(QColor::fromHsv(i * 6, 200, 200));
        const QString file = folder.filePath(QStringLiteral("%1.jpg").arg(i));
        cover.save(file);
        QVariantMap metadata =
            MprisStandIn::metadata(QStringLiteral("/t/%1").arg(i), QStringLiteral("Track number %1").arg(i),
                                   QStringLiteral("Band"), QStringLiteral("Album"), 200);
        metadata[QStringLiteral("mpris:artUrl")] = QUrl::fromLocalFile(file).toString();
        player.change(MprisStandIn::playing(metadata));
        QTest::qWait(400);
    }
    Table::row(QStringLiteral("resident memory after sixty covers"), figure(meter.residentMegabytes(), "MB"),
               QStringLiteral("55 MB"), QStringLiteral("before the first: %1").arg(figure(before, "MB")));
    stop(program);
}

/// The settings window with each of its tabs in turn, and what is left of it when it is closed.
void measureSettings(const PillWatch& pill)
{
    QProcess program;
    if (!start(program, pill)) {
        Table::row(QStringLiteral("resident memory, settings open"),
                   QStringLiteral("the pill did not appear"), {});
        return;
    }
    const ProcessMeter meter(program.processId());
    const auto isOpen = [] {
        return QProcess::execute(QStringLiteral("xdotool"),
                                 {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), QStringLiteral("^Settings")}) == 0;
    };
    const auto press = [](const QString& key) {
        QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
        QTest::qWait(400);
    };
    QTest::qWait(4000); // the start is over
    const double before = meter.residentMegabytes();
    double most = 0;
    constexpr int rounds = 5; // from the second on nothing is to be added
    for (int round = 0; round < rounds; ++round) {
        QProcess::execute(QStringLiteral(PELLAR_PROGRAM), {QStringLiteral("--settings")});
        if (!QTest::qWaitFor(isOpen)) {
            Table::row(QStringLiteral("resident memory, settings open"),
                       QStringLiteral("the window did not appear"), {});
            return;
        }
        QTest::qWait(1000);
        for (int tab = 0; tab < 5; ++tab) {
            most = std::max(most, meter.residentMegabytes());
            press(QStringLiteral("Down"));
        }
        press(QStringLiteral("Escape"));
    }
    QTest::qWait(3000);
    Table::row(QStringLiteral("resident memory, settings open"), figure(most, "MB"), QStringLiteral("90 MB"),
               QStringLiteral("before: %1, closed again: %2, of its own %3")
                   .arg(figure(before, "MB"), figure(meter.residentMegabytes(), "MB"),
                        figure(meter.ownMegabytes(), "MB")));
    stop(program);
}

} // namespace

/// Prints how fast and how small the program is, or what the arguments name of that. Has to run in a private
/// desktop session.
int main(int argc, char** argv)
{
    qputenv("QT_XCB_NO_MITSHM", "1"); // as the program does
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    importQmlModules();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    keepServicesToLoopback();
    RealPlayer mpv;
    if (!mpv.start()) {
        std::fputs("mpv did not start\n", stderr);
        return 1;
    }
    const PillWatch pill;
    const std::pair<const char*, std::function<void()>> measures[] = {
        {"analysis", measureAnalysisFrame},
        {"lyrics",
         [] {
             LyricsMeasures::measureParsers();
             LyricsMeasures::measureActiveLine();
         }},
        {"poll", measureStatusPoll},
        {"start", [&pill] { measureStart(pill); }},
        {"pill", [&pill] { measurePill(pill); }},
        {"covers", [&pill] { measureCovers(pill); }},
        {"settings", [&pill] { measureSettings(pill); }},
        {"capture", [&pill] { CaptureMeasures::measureCapture(pill); }},
        {"accounts", [&pill] { AccountMeasures::measureSignIn(pill); }},
        {"preview",
         [&pill] {
             PreviewMeasures::measureFootprint(pill);
             PreviewMeasures::measureOpening();
         }},
    };
    const QStringList wanted = QApplication::arguments().mid(1);
    Table::begin();
    for (const auto& [name, measure] : measures) {
        if (wanted.isEmpty() || wanted.contains(QLatin1String(name))) {
            measure();
        }
    }
    return 0;
}
