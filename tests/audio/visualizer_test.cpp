#include "audio/AudioBridge.h"
#include "audio/VisualizerModel.h"
#include "prefs/PowerModeManager.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

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
    void barHeights()
    {
        VisualizerBars dance;
        dance.isPlaying = true;
        VisualizerBars live = dance;
        live.isLive = true;
        live.bands = {0.5F, -3, 7};
        VisualizerBars silent = live;
        silent.isLive = false;
        VisualizerBars fall = live;
        fall.isPlaying = false;
        fall.stoppedAt = Uptime{100};
        const std::vector<std::tuple<VisualizerBars, int, double, double>> rows = {
            // bar, time, height, worked out apart from the program
            {dance, 0, 0.01, 6.133338}, // bass on the kick
            {dance, 0, 0.4375, 6.891323},
            {dance, 1, 1000, 10.347568},
            {dance, 3, 1000.25, 7.096742},
            {live, 0, 0.01, 6.5},
            {live, 1, 0.01, 2},
            {live, 2, 0.01, 11},
            {live, 3, 1000.25, 7.096742}, // has no band
            {silent, 0, 0.01, 6.133338},
            {{}, 1, 1000, 2},
            {fall, 0, 100.149, 7.40444}, // holds
            {fall, 0, 100.35, 4.279998},
            {fall, 0, 100.951, 2},
            {fall, 3, 100.2, 2.589767}}; // treble at once
        for (const auto& [bars, bar, at, height] : rows) {
            const double drawn = bars.barHeight(bar, {at});
            QVERIFY2(std::abs(drawn - height) < 1e-5, qPrintable(u"%1 for %2"_s.arg(drawn).arg(height)));
        }
    }

    void asksForFramesOnlyWhileItMoves()
    {
        Meter meter;
        VisualizerModel& model = meter.model;
        const VisualizerModel::Heights resting = {2, 2, 2, 2};
        QVERIFY(model.framesPerSecond() == 0 && model.heights() == resting && model.isAtRest());

        QProperty<bool> isPlaying(true);
        model.bindableIsPlaying().setBinding([&] { return isPlaying.value(); });
        QCOMPARE(model.framesPerSecond(), 15);
        isPlaying = false;
        const auto atStop = model.heights();
        QVERIFY(!model.isAtRest());
        meter.desktop.runLoop.advance(1);
        isPlaying = true; // on again before the bars have come to rest
        meter.desktop.runLoop.advance(1);
        isPlaying = false;
        meter.desktop.runLoop.advance(1.29);
        QVERIFY(model.framesPerSecond() == 15 && model.heights() == resting);
        int told = 0;
        connect(&model, &VisualizerModel::changed, this, [&] { ++told; });
        meter.desktop.runLoop.advance(0.02);
        QVERIFY(told > 0 && model.isAtRest() && model.framesPerSecond() == 0);
        // A still frame is that of the last stop.
        QVERIFY(model.heights() != atStop && model.heights() != resting);
        QCOMPARE(meter.desktop.runLoop.pending(), 0);

        isPlaying = true;
        Q_EMIT meter.capture->liveChanged(true);
        Q_EMIT meter.capture->bandsPublished({0.5F, 1, 0, 0.5F});
        QCOMPARE(model.heights(), (VisualizerModel::Heights{6.5, 11, 2, 6.5}));
    }

    void clampsTheRate()
    {
        for (const auto& [isEnabled, stored, rate] :
             {std::tuple(true, 0, 0), {true, -5, 0}, {true, 2'000'000, 60}, {false, 30, 0}}) {
            Meter meter;
            const PowerModeSettings changed{isEnabled, stored, 10};
            meter.power.updateSettings(PowerMode::normal, [&](PowerModeSettings& mode) { mode = changed; });
            meter.model.bindableIsPlaying().setValue(true);
            QCOMPARE(meter.model.framesPerSecond(), rate);
            meter.model.bindableIsPlaying().setValue(false);
            QCOMPARE(meter.model.isAtRest(), isEnabled && stored <= 0);
        }
    }
};

QTEST_GUILESS_MAIN(VisualizerTest)
#include "visualizer_test.moc"
