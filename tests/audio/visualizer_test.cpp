#include "audio/AudioBridge.h"
#include "audio/VisualizerModel.h"
#include "prefs/PowerModeManager.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QTest>

namespace {

/// A meter on a desktop of fakes.
struct Meter {
    FakePlatform desktop;
    MemoryDefaults defaults;
    FakeCapture* capture = new FakeCapture;
    AudioBridge audio{desktop.runLoop, defaults, std::unique_ptr<AudioCapture>(capture)};
    PowerModeManager power{defaults, desktop.power};
    VisualizerModel model{desktop.runLoop, audio, power};
};

} // namespace

class VisualizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barHeights_data();
    void barHeights();
    void asksForFramesOnlyWhileItMoves();
    void showsWhatIsHeard();
    void clampsTheRate();
};

void VisualizerTest::barHeights_data()
{
    QTest::addColumn<VisualizerBars>("bars");
    QTest::addColumn<int>("bar");
    QTest::addColumn<double>("at");
    QTest::addColumn<double>("height");

    // Worked out apart from the program.
    VisualizerBars dance;
    dance.isPlaying = true;
    QTest::newRow("bass on the kick") << dance << 0 << 0.01 << 6.133338;
    QTest::newRow("bass between kicks") << dance << 0 << 0.4375 << 6.891323;
    QTest::newRow("low, loud") << dance << 1 << 1000.0 << 10.347568;
    QTest::newRow("treble") << dance << 3 << 1000.25 << 7.096742;
    VisualizerBars live = dance;
    live.isLive = true;
    live.bands = {0.5F, -3, 7};
    QTest::newRow("live level") << live << 0 << 0.01 << 6.5;
    QTest::newRow("live below range") << live << 1 << 0.01 << 2.0;
    QTest::newRow("live above range") << live << 2 << 0.01 << 11.0;
    QTest::newRow("no band for this bar") << live << 3 << 1000.25 << 7.096742;
    VisualizerBars silent = live;
    silent.isLive = false;
    QTest::newRow("captured silence") << silent << 0 << 0.01 << 6.133338;

    QTest::newRow("never played") << VisualizerBars{} << 1 << 1000.0 << 2.0;
    VisualizerBars fall = live;
    fall.isPlaying = false;
    fall.stoppedAt = Uptime{100};
    QTest::newRow("bass holds") << fall << 0 << 100.149 << 7.40444;
    QTest::newRow("bass falling") << fall << 0 << 100.35 << 4.279998;
    QTest::newRow("bass down") << fall << 0 << 100.951 << 2.0;
    QTest::newRow("treble at once") << fall << 3 << 100.2 << 2.589767;
}

void VisualizerTest::barHeights()
{
    QFETCH(VisualizerBars, bars);
    QFETCH(int, bar);
    QFETCH(double, at);
    QFETCH(double, height);
    QVERIFY(std::abs(bars.barHeight(bar, {at}) - height) < 1e-5);
}

void VisualizerTest::asksForFramesOnlyWhileItMoves()
{
    Meter meter;
    VisualizerModel& model = meter.model;
    const VisualizerModel::Heights resting = {2, 2, 2, 2};
    QVERIFY(model.framesPerSecond() == 0 && model.heights() == resting && model.isAtRest());

    QProperty<bool> isPlaying(true);
    model.bindableIsPlaying().setBinding([&] { return isPlaying.value(); });
    QCOMPARE(model.framesPerSecond(), 15);
    const auto first = model.heights();
    meter.desktop.runLoop.advance(0.3);
    QVERIFY(model.heights() != first);
    meter.power.manualMode = PowerMode::powerUser;
    QCOMPARE(model.framesPerSecond(), 30);

    isPlaying = false;
    const auto atStop = model.heights();
    QVERIFY(!model.isAtRest());
    meter.desktop.runLoop.advance(1);
    isPlaying = true; // on again before the bars have come to rest
    meter.desktop.runLoop.advance(1);
    QCOMPARE(model.framesPerSecond(), 30);
    isPlaying = false;
    meter.desktop.runLoop.advance(1.29);
    QVERIFY(model.framesPerSecond() == 30 && model.heights() == resting);
    int told = 0;
    connect(&model, &VisualizerModel::changed, this, [&] { ++told; });
    meter.desktop.runLoop.advance(0.02);
    QVERIFY(told > 0 && model.isAtRest() && model.framesPerSecond() == 0);
    QVERIFY(model.heights() != atStop &&
            model.heights() != resting); // a still frame is that of the last stop
    QCOMPARE(meter.desktop.runLoop.pending(), 0);
}

void VisualizerTest::showsWhatIsHeard()
{
    Meter meter;
    meter.model.bindableIsPlaying().setValue(true);
    Q_EMIT meter.capture->liveChanged(true);
    Q_EMIT meter.capture->bandsPublished({0.5F, 1, 0, 0.5F});
    QCOMPARE(meter.model.heights(), (VisualizerModel::Heights{6.5, 11, 2, 6.5}));
}

void VisualizerTest::clampsTheRate()
{
    for (const auto& [isEnabled, stored, rate] :
         {std::tuple(true, 0, 0), {true, -5, 0}, {true, 2'000'000, 60}, {false, 30, 0}}) {
        Meter meter;
        meter.power.updateSettings(PowerMode::normal,
                                   [on = isEnabled, fps = stored](PowerModeSettings& settings) {
                                       settings.visualizerEnabled = on;
                                       settings.visualizerFPS = fps;
                                   });
        meter.model.bindableIsPlaying().setValue(true);
        QCOMPARE(meter.model.framesPerSecond(), rate);
        meter.model.bindableIsPlaying().setValue(false);
        QCOMPARE(meter.model.isAtRest(), isEnabled && stored <= 0);
    }
}

QTEST_GUILESS_MAIN(VisualizerTest)
#include "visualizer_test.moc"
