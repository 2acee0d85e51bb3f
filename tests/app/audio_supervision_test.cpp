#include "app/AudioCaptureSupervision.h"
#include "audio/AudioDeviceManager.h"
#include "engine/EngineFixture.h"
#include "prefs/PillVisibilityManager.h"

#include <QtTest>

namespace {

/// An engine whose capture is switched on and supervised.
struct Supervised : EngineFixture {
    explicit Supervised(int sources) : EngineFixture(sources)
    {
        defaults.setObject(u"com.orvalen.pellar.audio.live_visualizer_enabled"_s, true);
        start();
        supervision = std::make_unique<AudioCaptureSupervision>(
            AudioCaptureSupervision::Dependencies{.platform = desktop.ports,
                                                  .service = *service,
                                                  .sources = *manager,
                                                  .devices = devices,
                                                  .power = *power,
                                                  .visibility = visibility,
                                                  .bridge = *bridge});
        supervision->startAudioCapture();
    }

    bool isCapturing()
    {
        desktop.runLoop.settle();
        return capture->isRunning;
    }

    void play(const QString& state)
    {
        setState(Player::appleMusic, state);
        service->refresh();
    }

    void hearFor(double seconds, float level)
    {
        for (double passed = 0; passed < seconds; passed += 0.1) {
            desktop.runLoop.advance(0.1);
            hear(level);
        }
    }

    PillVisibilityManager visibility{defaults};
    AudioDeviceManager devices{desktop.audioHardware};
    std::unique_ptr<AudioCaptureSupervision> supervision;
};

} // namespace

class AudioSupervisionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsUse()
    {
        Supervised engine(3);
        QVERIFY(!engine.isCapturing());
        engine.play(u"playing"_s);
        QVERIFY(engine.isCapturing());
        QCOMPARE(engine.capture->pace, 15);
        engine.power->updateSettings(PowerMode::normal, [](auto& settings) { settings.visualizerFPS = 30; });
        QCOMPARE(engine.capture->pace, 30);
        const QList<std::function<void(bool)>> switches = {
            [&](bool isOn) { engine.power->manualMode = isOn ? PowerMode::normal : PowerMode::lowPower; },
            [&](bool isOn) { engine.visibility.showVisualizer = isOn; },
            [&](bool isOn) { engine.play(isOn ? u"playing"_s : u"paused"_s); },
            [&](bool isOn) {
                engine.desktop.power.isLow = !isOn;
                Q_EMIT engine.desktop.power.changed();
            }};
        for (const auto& set : switches) {
            set(false);
            QVERIFY(!engine.isCapturing());
            set(true);
            QVERIFY(engine.isCapturing());
        }
    }

    /// Through silences and keys, and whatever becomes of the clock on the wall.
    void listensWhileSystemAudioIsFollowed()
    {
        Supervised engine(7);
        engine.hearFor(2, 0.5F);
        QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
        engine.service->togglePlayPause();
        QCOMPARE(engine.keys.size(), 1);
        engine.desktop.runLoop.setDateForward(-3600);
        engine.hearFor(60, 0);
        QCOMPARE(engine.service->activePlayer(), Player::none);
        QVERIFY(engine.isCapturing());
        engine.hearFor(2, 0.5F);
        QVERIFY(engine.service->activePlayer() == Player::systemAudio && engine.service->isPlaying());
        engine.manager->toggle(AudioSource::systemAudio);
        QVERIFY(!engine.isCapturing());
    }

    void triesAgainWhileWanted()
    {
        Supervised engine(3);
        engine.play(u"playing"_s);
        QVERIFY(engine.isCapturing());
        const int starts = engine.capture->starts;
        engine.desktop.runLoop.advance(61);
        QCOMPARE(engine.capture->starts, starts + 2);
        Q_EMIT engine.devices.devicesChanged();
        QCOMPARE(engine.capture->starts, starts + 3);
        engine.play(u"paused"_s);
        engine.desktop.runLoop.advance(61);
        QCOMPARE(engine.capture->starts, starts + 3);
    }
};

QTEST_GUILESS_MAIN(AudioSupervisionTest)
#include "audio_supervision_test.moc"
