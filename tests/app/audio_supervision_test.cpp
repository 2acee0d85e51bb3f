#include "app/AudioCaptureSupervision.h"
#include "audio/AudioDeviceManager.h"
#include "engine/EngineFixture.h"
#include "prefs/PillVisibilityManager.h"

#include <QTest>

namespace {

constexpr int playersOnly = 3;
constexpr int systemAudioToo = 7;

/// An engine whose capture is switched on and supervised.
struct Supervised : EngineFixture {
    explicit Supervised(int sources) : EngineFixture(sources)
    {
        defaults.setObject(QStringLiteral("com.orvalen.pellar.audio.live_visualizer_enabled"), true);
        start();
        devices = std::make_unique<AudioDeviceManager>(desktop.audioHardware);
        supervision = std::make_unique<AudioCaptureSupervision>(
            AudioCaptureSupervision::Dependencies{.platform = desktop.ports,
                                                  .service = *service,
                                                  .sources = *manager,
                                                  .devices = *devices,
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

    void saveSystemPower(bool isLow)
    {
        desktop.power.isLow = isLow;
        Q_EMIT desktop.power.changed();
    }

    PillVisibilityManager visibility{defaults};
    std::unique_ptr<AudioDeviceManager> devices;
    std::unique_ptr<AudioCaptureSupervision> supervision;
};

} // namespace

class AudioSupervisionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsPlayback();
    void listensWhileSystemAudioIsFollowed();
    void triesAgainWhileWanted();
};

void AudioSupervisionTest::followsPlayback()
{
    Supervised engine(playersOnly);
    QVERIFY(!engine.isCapturing());
    engine.play(QStringLiteral("playing"));
    QVERIFY(engine.isCapturing());
    engine.saveSystemPower(true);
    QVERIFY(!engine.isCapturing());
    engine.saveSystemPower(false);
    QVERIFY(engine.isCapturing());
    engine.visibility.showVisualizer = false;
    QVERIFY(!engine.isCapturing());
    engine.visibility.showVisualizer = true;
    QVERIFY(engine.isCapturing());
    engine.play(QStringLiteral("paused"));
    QVERIFY(!engine.isCapturing());
    engine.power->manualMode = PowerMode::lowPower;
    engine.play(QStringLiteral("playing"));
    QVERIFY(!engine.isCapturing());
}

void AudioSupervisionTest::listensWhileSystemAudioIsFollowed()
{
    Supervised engine(systemAudioToo);
    QVERIFY(engine.isCapturing());
    engine.hear(0.5F);
    QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
    for (int i = 0; i < 15; ++i) {
        engine.hear(0);
    }
    QVERIFY(!engine.service->isPlaying());
    QVERIFY(engine.isCapturing());
    engine.manager->toggle(AudioSource::systemAudio);
    QVERIFY(!engine.isCapturing());
    engine.manager->toggle(AudioSource::systemAudio);
    QVERIFY(engine.isCapturing());
}

void AudioSupervisionTest::triesAgainWhileWanted()
{
    Supervised engine(playersOnly);
    engine.play(QStringLiteral("playing"));
    QVERIFY(engine.isCapturing());
    const int starts = engine.capture->starts;
    engine.desktop.runLoop.advance(61);
    QCOMPARE(engine.capture->starts, starts + 2);
    Q_EMIT engine.devices->devicesChanged();
    QCOMPARE(engine.capture->starts, starts + 3);
    engine.play(QStringLiteral("paused"));
    engine.desktop.runLoop.advance(61);
    QCOMPARE(engine.capture->starts, starts + 3);
}

QTEST_GUILESS_MAIN(AudioSupervisionTest)
#include "audio_supervision_test.moc"
