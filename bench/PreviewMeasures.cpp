#include "PreviewMeasures.h"

#include "PillWatch.h"
#include "ProcessMeter.h"
#include "Table.h"

#include "app/AppDelegate.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "linux/settings/PlistUserDefaults.h"
#include "support/Command.h"
#include "support/HttpStandIn.h"
#include "support/MemoryDefaults.h"
#include "support/RealPlayer.h"
#include "ui/QmlModules.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double holdSeconds = 0.4; // until a long press counts
constexpr double openingSeconds = 0.45;

QQuickWindow* windowNamed(const QString& title)
{
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow* const window : windows) {
        if (window->title() == title && window->isVisible()) {
            return qobject_cast<QQuickWindow*>(window);
        }
    }
    return nullptr;
}

/// The seconds since the press at which the preview was first drawn at each of its heights, for one opening.
class Opening : public QObject
{
public:
    Opening()
    {
        qGuiApp->installEventFilter(this);
        QQuickWindow& pill = *windowNamed(QStringLiteral("Pellar"));
        const QPoint title = pill.geometry().center() + QPoint(40, 0);
        run(QStringLiteral("xdotool mousemove %1 %2 mousedown 1").arg(title.x()).arg(title.y()));
        (void)QTest::qWaitFor([this] { return !frames.isEmpty(); });
        QTest::qWait(1000);
        run(QStringLiteral("xdotool mouseup 1 key Escape"));
        (void)QTest::qWaitFor([] { return windowNamed(QStringLiteral("Pellar Preview")) == nullptr; });
    }

    QList<double> frames;

private:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const window = qobject_cast<QQuickWindow*>(watched);
        if (event->type() == QEvent::MouseButtonPress && window != nullptr) {
            _sincePress.start();
        } else if (event->type() == QEvent::Expose && window != nullptr && window != _watched &&
                   window->title() == QStringLiteral("Pellar Preview")) {
            _watched = window;
            connect(window, &QQuickWindow::frameSwapped, this, [this] {
                if (_watched->height() != std::exchange(_height, _watched->height())) {
                    frames << static_cast<double>(_sincePress.nsecsElapsed()) / 1e9;
                }
            });
        }
        return false;
    }

    QElapsedTimer _sincePress;
    QQuickWindow* _watched = nullptr;
    int _height = 0;
};

QString figure(double value, const char* unit, int decimals = 0)
{
    return QString::number(value, 'f', decimals) + u' ' + QString::fromUtf8(unit);
}

/// A line every two seconds and a half.
QByteArray lyrics()
{
    QByteArray lines;
    for (int i = 0; i < 40; ++i) {
        const double seconds = i * 2.5;
        lines += "[0" + QByteArray::number(static_cast<int>(seconds) / 60) + ":" +
                 QByteArray::number(std::fmod(seconds, 60), 'f', 2).rightJustified(5, '0') +
                 "] This is line " + QByteArray::number(i) + " of a song that is not too short\\n";
    }
    return R"({"syncedLyrics": ")" + lines + R"("})";
}

/// The program with these settings, while the object lives.
class Running
{
public:
    Running(const PillWatch& pill, bool hasWidget)
    {
        _server.answer("/api/get", {.body = lyrics()});
        const auto set = [](const char* key, const QVariant& value) {
            PlistUserDefaults(PlistUserDefaults::defaultPath()).setObject(QString::fromUtf8(key), value);
        };
        set("com.orvalen.pellar.endpoint.lyrics", _server.address());
        set("pellar.widget.enabled", hasWidget);
        set("pellar.widget.showLyric", hasWidget);
        _program.start(QStringLiteral(PELLAR_PROGRAM), QStringList());
        isShown = PillWatch::millisecondsUntil([&] { return pill.isDrawn(); }) >= 0;
        QTest::qWait(3000);
    }
    ~Running()
    {
        _program.terminate();
        _program.waitForFinished();
    }

    /// Opens the preview, or closes it, by a long press beside the pill's buttons.
    static void toggle()
    {
        run(QStringLiteral("xdotool mousemove 985 14 mousedown 1 sleep 0.8 mouseup 1 sleep 0.6"));
    }

    ProcessMeter meter() const { return ProcessMeter(_program.processId()); }

    bool isShown = false;

private:
    HttpStandIn _server;
    QProcess _program;
};

} // namespace

void PreviewMeasures::measureFootprint(const PillWatch& pill)
{
    constexpr double seconds = 20;
    constexpr int openings = 100;
    constexpr int rest = 6000; // milliseconds; some time after the preview its memory is given back
    RealPlayer::tell(QStringLiteral("play"));
    const auto loadText = [](const ProcessMeter::Load& load) {
        return QStringLiteral("%1, %2").arg(figure(load.processor, "%", 2),
                                            figure(load.wakeUpsASecond, "wake-ups/s"));
    };
    {
        const Running widget(pill, true);
        Table::row(QStringLiteral("processor, with the widget's line"),
                   widget.isShown ? loadText(widget.meter().watch(seconds)) : QStringLiteral("no pill"),
                   QStringLiteral("1.5 %"));
    }
    const Running preview(pill, false);
    if (!preview.isShown) {
        Table::row(QStringLiteral("the preview"), QStringLiteral("no pill"), {});
        return;
    }
    const ProcessMeter meter = preview.meter();
    const double before = meter.residentMegabytes();
    Running::toggle();
    QTest::qWait(1000);
    Table::row(QStringLiteral("processor, preview open, lines running"), loadText(meter.watch(seconds)),
               QStringLiteral("2.5 %"));
    Table::row(QStringLiteral("resident memory, preview open"), figure(meter.residentMegabytes(), "MB", 1),
               QStringLiteral("75 MB"), QStringLiteral("before: %1").arg(figure(before, "MB", 1)));
    Running::toggle();
    QTest::qWait(rest);
    // Pages of libraries come and go as the kernel sees fit.
    const double closed = meter.ownMegabytes();
    for (int i = 0; i < openings; ++i) {
        Running::toggle();
        Running::toggle();
    }
    QTest::qWait(rest);
    Table::row(QStringLiteral("growth over a hundred further openings"),
               figure(meter.ownMegabytes() - closed, "MB", 2), QStringLiteral("2 MB"),
               QStringLiteral("of its own, after the first: %1").arg(figure(closed, "MB", 1)));
}

void PreviewMeasures::measureOpening()
{
    constexpr int openings = 7;
    MemoryDefaults defaults;
    defaults.setObject(QStringLiteral("pellar_onboarding_complete"), true);
    UserDefaults::setStandard(&defaults);
    const PlayerChoice casting(defaults);
    LinuxPlatform linux(casting);
    Platform::setCurrent(&linux.ports());
    AppDelegate program(linux.ports(), defaults, linux.appearance());
    program.applicationDidFinishLaunching();
    QTest::qWait(2000);
    QList<double> first;
    QList<double> counts;
    for (int i = 0; i < openings; ++i) {
        const Opening opening;
        if (opening.frames.isEmpty()) {
            Table::row(QStringLiteral("the preview"), QStringLiteral("did not open"), {});
            return;
        }
        const double begin = opening.frames.first();
        first << (begin - holdSeconds) * 1e3;
        counts << static_cast<double>(
            std::count_if(opening.frames.begin(), opening.frames.end(),
                          [begin](double time) { return time <= begin + openingSeconds; }));
    }
    Table::row(QStringLiteral("long press to the preview's first frame"),
               QStringLiteral("%1 at first, then %2 (worst)")
                   .arg(figure(first.first(), "ms"),
                        figure(*std::max_element(first.begin() + 1, first.end()), "ms")),
               QStringLiteral("50 ms"));
    std::sort(counts.begin(), counts.end());
    Table::row(QStringLiteral("frames as the preview opens"),
               QStringLiteral("%1 (worst %2)").arg(counts[openings / 2]).arg(counts.first()),
               QStringLiteral("24"));
}
