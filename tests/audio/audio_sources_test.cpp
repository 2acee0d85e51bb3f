#include "audio/AudioBridge.h"
#include "audio/AudioCapture.h"
#include "audio/AudioSourceManager.h"
#include "base/NotificationCenter.h"
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
    void storedSources_data();
    void storedSources();
    void toggle_data();
    void toggle();
    void assignmentsAreStoredThenTold();
};

void AudioSourcesTest::storedSources_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("bits");

    QTest::newRow("absent") << QVariant() << 3;
    QTest::newRow("none") << QVariant(qlonglong{0}) << 0;
    QTest::newRow("unknown bits") << QVariant(qlonglong{9}) << 9;
    QTest::newRow("negative") << QVariant(qlonglong{-2}) << -2;
    QTest::newRow("beyond int") << QVariant(qlonglong{1} << 32) << 3;
    QTest::newRow("text") << QVariant(QStringLiteral("4")) << 3;
    QTest::newRow("fraction") << QVariant(4.0) << 3;
}

void AudioSourcesTest::storedSources()
{
    QFETCH(QVariant, stored);
    const Fixture fixture(stored);
    QTEST(fixture.manager.enabledSources().toInt(), "bits");
    QVERIFY(!fixture.bridge.isEnabled()); // reading is no assignment
}

void AudioSourcesTest::toggle_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<AudioSources>("toggled");
    QTest::addColumn<int>("after");

    const AudioSources both = AudioSource::appleMusic | AudioSource::spotify;
    QTest::newRow("add") << 1 << AudioSources(AudioSource::spotify) << 3;
    QTest::newRow("remove") << 3 << AudioSources(AudioSource::appleMusic) << 2;
    QTest::newRow("one of two missing") << 1 << both << 3;
    QTest::newRow("both there") << 7 << both << 4;
    QTest::newRow("unknown bits stay") << 9 << AudioSources(AudioSource::appleMusic) << 8;
}

void AudioSourcesTest::toggle()
{
    QFETCH(int, before);
    QFETCH(AudioSources, toggled);
    QFETCH(int, after);
    Fixture fixture(qlonglong{before});
    fixture.manager.toggle(toggled);
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
    QVERIFY(wasReady);
    QVERIFY(fixture.bridge.hasUserDecided());

    fixture.manager.toggle(AudioSource::systemAudio);
    QCOMPARE(posts, 2);
    QVERIFY(!fixture.manager.includesSystemAudio());
    QVERIFY(fixture.bridge.isEnabled());

    fixture.manager.setEnabledSources(AudioSource::spotify);
    QVERIFY(fixture.manager.includesSpotify() && !fixture.manager.includesAppleMusic());
}

QTEST_GUILESS_MAIN(AudioSourcesTest)
#include "audio_sources_test.moc"
