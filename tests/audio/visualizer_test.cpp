#include "audio/AudioBridge.h"
#include "audio/VisualizerModel.h"
#include "prefs/PowerModeManager.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QTest>

namespace {

VisualizerBars playing(bool isLive, const QList<float>& bands)
{
    VisualizerBars bars;
    bars.isPlaying = true;
    bars.isLive = isLive;
    bars.bands = bands;
    return bars;
}

} // namespace

class VisualizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barHeights_data();
    void barHeights();
    void asksForFramesOnlyWhileItMoves();
    void showsWhatIsHeard();
    void clampsTheRate_data();
    void clampsTheRate();
};

void VisualizerTest::barHeights_data()
{
    QTest::addColumn<VisualizerBars>("bars");
    QTest::addColumn<int>("bar");
    QTest::addColumn<double>("at");
    QTest::addColumn<double>("height");

    // Worked out apart from the program.
    const VisualizerBars dance = playing(false, {});
    QTest::newRow("bass on the kick") << dance << 0 << 0.01 << 6.133338;
    QTest::newRow("bass between kicks") << dance << 0 << 0.4375 << 6.891323;
    QTest::newRow("low, loud") << dance << 1 << 1000.0 << 10.347568;
    QTest::newRow("high, quiet") << dance << 2 << 1000.0 << 2.704011;
    QTest::newRow("treble") << dance << 3 << 1000.25 << 7.096742;

    const VisualizerBars live = playing(true, {0.5F, -3, 7});
    QTest::newRow("live level") << live << 0 << 0.01 << 6.5;
    QTest::newRow("live below range") << live << 1 << 0.01 << 2.0;
    QTest::newRow("live above range") << live << 2 << 0.01 << 11.0;
    QTest::newRow("no band for this bar") << live << 3 << 1000.25 << 7.096742;
    const VisualizerBars silent = playing(false, {0, 0, 0, 0});
    QTest::newRow("captured silence") << silent << 3 << 1000.25 << 7.096742;

    QTest::newRow("never played") << VisualizerBars{} << 1 << 1000.0 << 2.0;
    VisualizerBars fall = playing(true, {1, 1, 1, 1});
    fall.isPlaying = false;
    fall.stoppedAt = Uptime{100};
    QTest::newRow("bass holds") << fall << 0 << 100.149 << 7.40444;
    QTest::newRow("bass falling") << fall << 0 << 100.35 << 4.279998;
    QTest::newRow("bass down") << fall << 0 << 100.951 << 2.0;
    QTest::newRow("treble at once") << fall << 3 << 100.2 << 2.589767;
    QTest::newRow("treble down") << fall << 3 << 100.81 << 2.0;
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
    FakePlatform desktop;
    MemoryDefaults defaults;
    AudioBridge audio(desktop.runLoop, defaults, nullptr);
    PowerModeManager power(defaults, desktop.power);
    VisualizerModel meter(desktop.runLoop, audio, power);
    VisualizerModel::Heights resting;
    resting.fill(2);
    QCOMPARE(meter.framesPerSecond(), 0);
    QCOMPARE(meter.heights(), resting);
    QVERIFY(meter.isAtRest());

    meter.bindableIsPlaying().setValue(true);
    QCOMPARE(meter.framesPerSecond(), 15);
    const auto first = meter.heights();
    desktop.runLoop.advance(0.3);
    QVERIFY(meter.heights() != first);
    power.manualMode = PowerMode::powerUser;
    QCOMPARE(meter.framesPerSecond(), 30);

    meter.bindableIsPlaying().setValue(false);
    const auto atStop = meter.heights();
    QVERIFY(!meter.isAtRest());
    desktop.runLoop.advance(1.29);
    QCOMPARE(meter.framesPerSecond(), 30);
    QCOMPARE(meter.heights(), resting);
    int told = 0;
    connect(&meter, &VisualizerModel::changed, this, [&] { ++told; });
    desktop.runLoop.advance(0.02);
    QVERIFY(told > 0 && meter.isAtRest());
    QCOMPARE(meter.framesPerSecond(), 0);
    QCOMPARE(meter.heights(), atStop); // a still frame is that of the stop
    QCOMPARE(desktop.runLoop.pending(), 0);
}

void VisualizerTest::showsWhatIsHeard()
{
    FakePlatform desktop;
    MemoryDefaults defaults;
    auto* const capture = new FakeCapture;
    AudioBridge audio(desktop.runLoop, defaults, std::unique_ptr<AudioCapture>(capture));
    PowerModeManager power(defaults, desktop.power);
    VisualizerModel meter(desktop.runLoop, audio, power);
    meter.bindableIsPlaying().setValue(true);
    Q_EMIT capture->liveChanged(true);
    Q_EMIT capture->bandsPublished({0.5F, 1, 0, 0.5F});
    QCOMPARE(meter.heights(), (VisualizerModel::Heights{6.5, 11, 2, 6.5}));
}

void VisualizerTest::clampsTheRate_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("rate");
    QTest::newRow("still") << true << 0 << 0;
    QTest::newRow("nonsense below") << true << -5 << 0;
    QTest::newRow("nonsense above") << true << 2'000'000 << 60;
    QTest::newRow("no meter") << false << 30 << 0;
}

void VisualizerTest::clampsTheRate()
{
    QFETCH(bool, enabled);
    QFETCH(int, stored);
    FakePlatform desktop;
    MemoryDefaults defaults;
    AudioBridge audio(desktop.runLoop, defaults, nullptr);
    PowerModeManager power(defaults, desktop.power);
    power.updateSettings(PowerMode::normal, [&](PowerModeSettings& settings) {
        settings.visualizerEnabled = enabled;
        settings.visualizerFPS = stored;
    });
    VisualizerModel meter(desktop.runLoop, audio, power);
    meter.bindableIsPlaying().setValue(true);
    QTEST(meter.framesPerSecond(), "rate");
    meter.bindableIsPlaying().setValue(false);
    QCOMPARE(meter.isAtRest(), enabled && stored <= 0);
}

QTEST_GUILESS_MAIN(VisualizerTest)
#include "visualizer_test.moc"
