#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "audio/MediaKeys.h"
#include "base/NotificationCenter.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"

#include <QTest>

using Key = MediaKeys::Key;

namespace {

const QString sourcesKey = QStringLiteral("pellar.audio.sources");

struct Sources {
    explicit Sources(const QVariant& stored = {})
        : manager((defaults.values.insert(sourcesKey, stored), defaults), notifications, bridge)
    {
    }
    MemoryDefaults defaults;
    ManualRunLoop runLoop;
    NotificationCenter notifications;
    AudioBridge bridge{runLoop, defaults, nullptr};
    AudioSourceManager manager;
};

} // namespace

/// Which sound is followed, and how sound of no known player is controlled.
class AudioSourcesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toggle_data();
    void toggle();
    void assignmentsAreStoredThenTold();
    void bridgeFollowsItsSwitch();
    void keyTakesOneWay_data();
    void keyTakesOneWay();
    void deafPageIsCommanded_data();
    void deafPageIsCommanded();
};

void AudioSourcesTest::toggle_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("toggled");
    QTest::addColumn<int>("after");
    QTest::newRow("absent") << QVariant() << 1 << 2;
    QTest::newRow("beyond int") << QVariant(qlonglong{1} << 32) << 4 << 7;
    QTest::newRow("text") << QVariant(QStringLiteral("4")) << 3 << 0;
    QTest::newRow("one of two missing") << QVariant(qlonglong{1}) << 3 << 3;
    QTest::newRow("unknown bits stay") << QVariant(qlonglong{9}) << 1 << 8;
}

void AudioSourcesTest::toggle()
{
    QFETCH(const QVariant, stored);
    QFETCH(const int, toggled);
    QFETCH(const int, after);
    Sources sources(stored);
    QVERIFY(!sources.bridge.isEnabled()); // reading is no assignment
    sources.manager.toggle(AudioSources::fromInt(toggled));
    QCOMPARE(sources.manager.enabledSources().toInt(), after);
    QCOMPARE(sources.defaults.integer(sourcesKey), std::optional(qlonglong{after}));
}

void AudioSourcesTest::assignmentsAreStoredThenTold()
{
    Sources sources;
    int posts = 0;
    bool wasReady = false;
    sources.notifications.observe(
        QStringLiteral("com.orvalen.pellar.audioSourceChanged"), &sources.manager, [&](const QVariantMap&) {
            ++posts;
            wasReady = sources.defaults.integer(sourcesKey) == 7 && sources.manager.includesSystemAudio() &&
                       sources.bridge.isEnabled();
        });
    sources.manager.toggle(AudioSource::systemAudio);
    QVERIFY(posts == 1 && wasReady && sources.bridge.hasUserDecided());
    sources.manager.setEnabledSources(AudioSource::spotify);
    QCOMPARE(posts, 2);
    QVERIFY(sources.bridge.isEnabled()); // the source does not switch it off again
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
    QVERIFY(capture->isRunning);
    Q_EMIT capture->liveChanged(true);
    Q_EMIT capture->bandsPublished({1, 1, 1, 1});
    QVERIFY(bridge.isLive() && bridge.bands()[3] == 1);

    bridge.setEnabled(false);
    runLoop.settle();
    QVERIFY(!capture->isRunning && !bridge.isLive());
    QCOMPARE(bridge.bands(), (QList<float>{0, 0, 0, 0}));
    defaults.values.clear();
    bridge.setEnabled(false); // an equal value is a decision, too
    QVERIFY(!AudioBridge(runLoop, defaults, nullptr).isEnabled() && bridge.hasUserDecided());
}

void AudioSourcesTest::keyTakesOneWay_data()
{
    QTest::addColumn<QString>("front");
    QTest::addColumn<QString>("reply"); // of the browser
    QTest::addColumn<bool>("isGrabbed");
    QTest::addColumn<bool>("isPlayer");
    QTest::addColumn<QString>("way");

    const QString browser = QStringLiteral("com.apple.Safari");
    const QString music = QStringLiteral("com.apple.Music");
    const QString done = QStringLiteral("OK");
    QTest::newRow("browser") << browser << done << false << true << "type";
    QTest::newRow("page is gone") << browser << "ERR: gone" << true << true << "type post";
    QTest::newRow("not permitted") << browser << QString() << false << true << "type send";
    QTest::newRow("no browser, grabbed") << music << done << true << true << "post";
    QTest::newRow("nothing in front, not grabbed") << QString() << done << false << true << "send";
    QTest::newRow("nobody there") << QString() << done << false << false << "post";
}

void AudioSourcesTest::keyTakesOneWay()
{
    QFETCH(QString, front);
    QFETCH(QString, reply);
    QFETCH(bool, isGrabbed);
    QFETCH(bool, isPlayer);
    const LogFile log;
    FakePlatform desktop;
    desktop.workspace.front = RunningApplication{.processId = 4711, .bundleId = front};
    const auto script = [](const char* keystroke) {
        return QStringLiteral("tell application \"System Events\"\n"
                              "    try\n"
                              "        set p to first process whose unix id is 4711\n"
                              "        tell p to keystroke %1\n"
                              "        return \"OK\"\n"
                              "    on error errMsg\n"
                              "        return \"ERR: \" & errMsg\n"
                              "    end try\n"
                              "end tell")
            .arg(QString::fromUtf8(keystroke));
    };
    const QMap<Key, QString> scripts = {{Key::playPause, script(R"(" ")")},
                                        {Key::next, script(R"("N" using {shift down})")},
                                        {Key::previous, script(R"("P" using {shift down})")}};
    desktop.eventTaps.isGrabbed = isGrabbed;
    if (isPlayer) {
        desktop.mediaPlayers.players = {{.id = QStringLiteral(":1.7"), .isPlaying = true}};
    }
    for (const Key key : scripts.keys()) {
        desktop.scripts.outcomes[scripts[key]].reply = reply;
        MediaKeys(desktop.ports).send(key);
        QStringList way;
        for (const QString& typed : desktop.scripts.take()) {
            QCOMPARE(typed, scripts[key]);
            way << QStringLiteral("type");
        }
        for (const auto& sent : std::exchange(desktop.mediaPlayers.sent, {})) {
            QCOMPARE(sent.first, QStringLiteral(":1.7"));
            way << QStringLiteral("send");
        }
        using Tap = EventTaps::Tap;
        const int code = static_cast<int>(key) << 16;
        const SystemDefinedEvent down{.modifierFlags = 0xA00, .data1 = code | 0xA00, .data2 = -1};
        const SystemDefinedEvent up{.modifierFlags = 0xB00, .data1 = code | 0xB00, .data2 = -1};
        const auto posted = std::exchange(desktop.eventTaps.posted, {});
        if (!posted.isEmpty()) {
            QVERIFY(posted ==
                    (decltype(posted){
                        {down, Tap::hid}, {down, Tap::session}, {up, Tap::hid}, {up, Tap::session}}));
            way << QStringLiteral("post");
        }
        QTEST(way.join(u' '), "way");
    }
}

void AudioSourcesTest::deafPageIsCommanded_data()
{
    QTest::addColumn<QString>("events"); // space or shift-N; p, r: the page pauses, resumes; digits: tenths
    QTest::addColumn<int>("commands");

    QTest::newRow("page reacts") << " 1p9 1r99" << 0;
    QTest::newRow("page is deaf") << " 8" << 0;
    QTest::newRow("and has had its second") << " 99" << 1;
    QTest::newRow("is told both ways") << " 99p9 99r9" << 2;
    QTest::newRow("undone") << " 3 99" << 0;
    QTest::newRow("three times") << " 3 3 99" << 1;
    QTest::newRow("slow page, pressed again") << " 3p1 3r99" << 0;
    QTest::newRow("next shows no effect") << "N99" << 0;
    QTest::newRow("browser quits") << " 3q99" << 0;
    QTest::newRow("sounds elsewhere") << "e 99" << 0;
}

void AudioSourcesTest::deafPageIsCommanded()
{
    QFETCH(QString, events);
    const LogFile log;
    FakePlatform desktop;
    desktop.workspace.front =
        RunningApplication{.processId = 4711, .bundleId = QStringLiteral("org.mozilla.firefox")};
    desktop.scripts.otherwise.reply = QStringLiteral("OK");
    QList<MediaPlayer>& players = desktop.mediaPlayers.players;
    players = {{.id = QStringLiteral(":1.7"), .isPlaying = true, .lastPlayed = {1}, .processId = 4711}};
    MediaKeys keys(desktop.ports);
    for (const QChar event : events) {
        if (event == u' ' || event == u'N') {
            keys.send(event == u' ' ? Key::playPause : Key::next);
        } else if (event == u'p' || event == u'r') {
            players[0].isPlaying = event == u'r';
        } else if (event == u'q') {
            players.clear();
        } else if (event == u'e') {
            players[0].processId = std::nullopt;
        } else {
            desktop.runLoop.advance(event.digitValue() * 0.1);
        }
    }
    QTEST(static_cast<int>(desktop.mediaPlayers.sent.size()), "commands");
    QVERIFY(desktop.eventTaps.posted.isEmpty());
}

QTEST_GUILESS_MAIN(AudioSourcesTest)
#include "audio_sources_test.moc"
