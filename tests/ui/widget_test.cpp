#include "engine/EngineFixture.h"
#include "lyrics/LyricsService.h"
#include "prefs/WidgetManager.h"
#include "ui/QmlModules.h"
#include "ui/lyrics/LyricsModel.h"
#include "ui/widget/WidgetWindow.h"

#include <QtTest>

namespace {

const QString frameKey = u"pellar.widget.frame"_s;

/// An engine with a title that is too long for the widget.
struct LongTitle : EngineFixture {
    explicit LongTitle(bool isPlaying)
    {
        const QString title = u"Far Too Long "_s.repeated(6);
        reply(Player::appleMusic, u"%1|||Band|||Album|||200|||1|||%2|||7"_s.arg(title, boolText(isPlaying)));
        start();
        desktop.runLoop.settle();
    }
};

/// The widget on a desktop of fakes.
struct Shown {
    explicit Shown(bool isPlaying = true) : engine(isPlaying)
    {
        window = std::make_unique<WidgetWindow>(
            WidgetWindow::Dependencies{.manager = manager,
                                       .defaults = engine.defaults,
                                       .windows = engine.desktop.floatingWindows,
                                       .bar = engine.desktop.statusBar,
                                       .lyrics = model,
                                       .track = {.service = *engine.service,
                                                 .theme = *engine.theme,
                                                 .power = *engine.power,
                                                 .appearance = engine.desktop.appearance,
                                                 .runLoop = loop,
                                                 .clock = clock}});
        window->present();
        [[maybe_unused]] const bool isExposed = QTest::qWaitForWindowExposed(window.get());
        loop.advance(0.8); // past the title's rest
    }

    /// How many different pictures of the title there are in a second.
    int pictures()
    {
        const auto picture = [this] {
            return window->grabWindow().copy(window->layout().title.toAlignedRect());
        };
        int count = 0;
        QImage last = picture();
        for (int i = 0; i < 60; ++i) {
            loop.advance(1.0 / 60);
            const QImage next = picture();
            count += next != last ? 1 : 0;
            last = next;
        }
        return count;
    }

    void moveTo(int x)
    {
        window->setPosition(x, 200);
        QCoreApplication::processEvents();
    }

    /// Where the settings have it.
    QPointF kept() const
    {
        const QVariantMap frame = engine.defaults.values.value(frameKey).toMap();
        return {frame.value(u"x"_s).toDouble(), frame.value(u"y"_s).toDouble()};
    }

    LongTitle engine;
    ManualRunLoop& loop = engine.desktop.runLoop;
    FrameClock clock{loop};
    WidgetManager manager{engine.defaults};
    LyricsService lyrics{loop, engine.desktop.notifications, engine.defaults, engine.desktop.workspace,
                         [](const LyricsRequest&, QObject*, const auto&) {}};
    LyricsModel model{{.service = *engine.service, .lyrics = lyrics, .runLoop = loop}};
    std::unique_ptr<WidgetWindow> window;
};

} // namespace

/// The widget's window, as the program builds it.
class WidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        importQmlModules();
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }

    void scrollsForSomebody()
    {
        Shown playing;
        QVERIFY(playing.pictures() >= 29);
        playing.engine.power->manualMode = PowerMode::lowPower;
        QCOMPARE(playing.pictures(), 0);

        Shown paused(false);
        QCOMPARE(paused.pictures(), 0);
        QTest::mouseMove(paused.window.get(), {150, 70});
        paused.loop.advance(0.8);
        QVERIFY(paused.pictures() >= 29);
    }

    void keepsFrameWhenItRests()
    {
        Shown shown;
        shown.loop.advance(1);
        const QPointF first = shown.kept();
        for (int step = 1; step <= 10; ++step) {
            shown.moveTo(100 + step);
            shown.loop.advance(0.2);
            QCOMPARE(shown.kept(), first);
        }
        shown.loop.advance(0.2);
        QCOMPARE(shown.kept(), QPointF(110, 200));
        shown.moveTo(300);
        shown.window->hide();
        QCOMPARE(shown.kept(), QPointF(300, 200));
        shown.window->show();
        shown.moveTo(400);
        shown.window.reset();
        QCOMPARE(shown.kept(), QPointF(400, 200));
    }

    void isShapedToItsSize()
    {
        Shown shown;
        shown.engine.desktop.statusBar.composited = false;
        for (const QSize size : {QSize(420, 200), QSize(260, 140)}) {
            shown.window->resize(size);
            QCoreApplication::processEvents();
            QCOMPARE(shown.window->layout().progress.right(), size.width() - 12.0);
            QCOMPARE(shown.window->mask().boundingRect().size(), size);
        }
    }
};

QTEST_MAIN(WidgetTest)
#include "widget_test.moc"
