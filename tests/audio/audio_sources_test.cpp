#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "base/NotificationCenter.h"
#include "support/FakeCapture.h"
#include "support/ManualRunLoop.h"
#include "support/MemoryDefaults.h"

#include <QTest>

namespace {

const QString key = QStringLiteral("pellar.audio.sources");

struct Fixture {
    explicit Fixture(const QVariant& stored = {})
        : manager((defaults.values.insert(key, stored), defaults), notifications, bridge)
    {
    }
    MemoryDefaults defaults;
    ManualRunLoop runLoop;
    NotificationCenter notifications;
    AudioBridge bridge{runLoop, defaults, nullptr};
    AudioSourceManager manager;
};

} // namespace

class AudioSourcesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toggle_data();
    void toggle();
    void assignmentsAreStoredThenTold();
    void bridgeFollowsItsSwitch();
};

void AudioSourcesTest::toggle_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("toggled");
    QTest::addColumn<int>("after");
    const auto row = [](const char* name, const QVariant& stored, int before, int toggled, int after) {
        QTest::newRow(name) << stored << before << toggled << after;
    };
    row("absent", {}, 3, 1, 2);
    row("none", qlonglong{0}, 0, 2, 2);
    row("beyond int", qlonglong{1} << 32, 3, 4, 7);
    row("text", QStringLiteral("4"), 3, 3, 0);
    row("one of two missing", qlonglong{1}, 1, 3, 3);
    row("both there", qlonglong{7}, 7, 3, 4);
    row("unknown bits stay", qlonglong{9}, 9, 1, 8);
    row("negative", qlonglong{-2}, -2, 1, -1);
}

void AudioSourcesTest::toggle()
{
    QFETCH(const QVariant, stored);
    QFETCH(const int, toggled);
    QFETCH(const int, after);
    Fixture fixture(stored);
    QTEST(fixture.manager.enabledSources().toInt(), "before");
    QVERIFY(!fixture.bridge.isEnabled()); // reading is no assignment
    fixture.manager.toggle(AudioSources::fromInt(toggled));
    QCOMPARE(fixture.manager.enabledSources().toInt(), after);
    QCOMPARE(fixture.defaults.integer(key), std::optional(qlonglong{after}));
}

void AudioSourcesTest::assignmentsAreStoredThenTold()
{
    Fixture fixture;
    int posts = 0;
    bool wasReady = false;
    fixture.notifications.observe(
        QStringLiteral("com.orvalen.pellar.audioSourceChanged"), &fixture.manager, [&](const QVariantMap&) {
            ++posts;
            wasReady = fixture.defaults.integer(key) == 7 && fixture.manager.includesSystemAudio() &&
                       fixture.bridge.isEnabled();
        });
    fixture.manager.toggle(AudioSource::systemAudio);
    QCOMPARE(posts, 1);
    QVERIFY(wasReady && fixture.bridge.hasUserDecided());
    fixture.manager.setEnabledSources(AudioSource::spotify);
    QCOMPARE(posts, 2);
    QVERIFY(fixture.manager.includesSpotify() && !fixture.manager.includesAppleMusic());
    QVERIFY(fixture.bridge.isEnabled()); // the source does not switch it off again
}

void AudioSourcesTest::bridgeFollowsItsSwitch()
{
    ManualRunLoop runLoop;
    MemoryDefaults defaults;
    auto* const capture = new FakeCapture;
    AudioBridge bridge(runLoop, defaults, std::unique_ptr<AudioCapture>(capture));
    QVERIFY(!bridge.isEnabled() && !bridge.hasUserDecided());
    bridge.start();
    QVERIFY(!capture->isRunning);

    bridge.setEnabled(true);
    QVERIFY(capture->isRunning && bridge.hasUserDecided());
    Q_EMIT capture->liveChanged(true);
    Q_EMIT capture->bandsPublished({1, 1, 1, 1});
    QVERIFY(bridge.isLive() && bridge.bands()[3] == 1);

    bridge.setEnabled(false);
    runLoop.settle();
    QVERIFY(!capture->isRunning && !bridge.isLive());
    QCOMPARE(bridge.bands(), (QList<float>{0, 0, 0, 0}));
    const auto stored = [&defaults] {
        return defaults.boolean(QStringLiteral("com.orvalen.pellar.audio.live_visualizer_enabled"));
    };
    QCOMPARE(stored(), std::optional(false));
    defaults.values.clear();
    bridge.setEnabled(false); // an equal value is a decision, too
    QCOMPARE(stored(), std::optional(false));
    QVERIFY(bridge.hasUserDecided());
}

QTEST_GUILESS_MAIN(AudioSourcesTest)
#include "audio_sources_test.moc"
