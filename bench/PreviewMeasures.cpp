#include "PreviewMeasures.h"

#include "Table.h"

#include "app/AppDelegate.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "support/Command.h"
#include "support/MemoryDefaults.h"
#include "ui/QmlModules.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>

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

/// The seconds since the press at which frames of the preview were drawn, for one opening.
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
            connect(window, &QQuickWindow::frameSwapped, this,
                    [this] { frames << static_cast<double>(_sincePress.nsecsElapsed()) / 1e9; });
        }
        return false;
    }

    QElapsedTimer _sincePress;
    QQuickWindow* _watched = nullptr;
};

QString figure(double value, const char* unit)
{
    return QString::number(value, 'f', 0) + u' ' + QString::fromUtf8(unit);
}

} // namespace

void PreviewMeasures::measureOpening()
{
    constexpr int openings = 7;
    MemoryDefaults defaults;
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
