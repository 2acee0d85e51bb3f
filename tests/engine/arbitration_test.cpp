#include "EngineFixture.h"

#include <QSignalSpy>
#include <QTest>

class ArbitrationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesSource_data();
    void choosesSource();
    void clearsOnce();
    void adoptsWholeStatus();
    void countsNewTracksByTitleAndArtist();
    void pauseTailIsNotNewSound();
    void engagementOutlivesSilence();
    void liveSoundTakesOverAtOnce();
    void playerTakesDisplayBack();
    void showsHysteresis();
    void entersSystemAudioQuietlyTheSecondTime();
    void ticks();
    void refreshesWhenTold_data();
    void refreshesWhenTold();
};

void ArbitrationTest::choosesSource_data()
{
    QTest::addColumn<int>("sources");
    QTest::addColumn<QString>("before"); // the player that was playing before
    QTest::addColumn<QString>("music");
    QTest::addColumn<QString>("spotify");
    QTest::addColumn<bool>("isSounding");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("lastLine");

    const auto row = [](const char* name, int sources, const char* before, const char* music,
                        const char* spotify, bool isSounding, const char* expected, const char* line) {
        QTest::newRow(name) << sources << QString::fromLatin1(before) << QString::fromLatin1(music)
                            << QString::fromLatin1(spotify) << isSounding << QString::fromLatin1(expected)
                            << QString::fromLatin1(line);
    };
    row("nothing", 7, "", "off", "off", false, "none", "refresh: clearing state");
    row("playing beats paused", 3, "", "paused", "playing", false, "spotify",
        "refresh: -> spotify (playing)");
    row("Music before Spotify", 3, "", "playing", "playing", false, "appleMusic",
        "refresh: -> appleMusic (playing)");
    row("keeps playing Spotify", 3, "spotify", "playing", "playing", false, "spotify",
        "refresh: stuck on spotify (playing)");
    row("keeps playing Music", 3, "appleMusic", "playing", "playing", false, "appleMusic",
        "refresh: stuck on appleMusic (playing)");
    row("leaves paused Spotify", 3, "spotify", "playing", "paused", false, "appleMusic",
        "refresh: -> appleMusic (playing)");
    row("paused Music first", 3, "", "paused", "paused", false, "appleMusic",
        "refresh: -> appleMusic (paused)");
    row("paused Spotify alone", 3, "", "stopped", "paused", false, "spotify", "refresh: -> spotify (paused)");
    row("all stopped", 7, "appleMusic", "stopped", "stopped", false, "none", "refresh: clearing state");
    row("error is no track", 7, "", "error", "off", false, "none", "refresh: clearing state");
    row("disabled Music", 2, "", "playing", "paused", false, "spotify", "refresh: -> spotify (paused)");
    row("no source enabled", 0, "", "playing", "playing", false, "none", "refresh: clearing state");
    row("sound beats paused", 7, "", "paused", "paused", true, "systemAudio",
        "refresh: -> systemAudio (live=true engaged=true)");
    row("playing beats sound", 7, "", "paused", "playing", true, "spotify",
        "refresh: stuck on spotify (playing)");
    row("sound not enabled", 3, "", "paused", "off", true, "appleMusic", "refresh: -> appleMusic (paused)");
}

void ArbitrationTest::choosesSource()
{
    QFETCH(int, sources);
    QFETCH(QString, before);
    QFETCH(QString, music);
    QFETCH(QString, spotify);
    QFETCH(bool, isSounding);
    EngineFixture engine(sources);
    const auto set = [&engine](Player player, const QString& state) {
        if (state == QStringLiteral("error")) {
            engine.reply(player, QString());
        } else {
            engine.setState(player, state);
        }
    };
    if (!before.isEmpty()) {
        set(before == QStringLiteral("spotify") ? Player::spotify : Player::appleMusic,
            QStringLiteral("playing"));
    }
    engine.start();
    set(Player::appleMusic, music);
    set(Player::spotify, spotify);
    if (isSounding) {
        engine.hear(0.5F);
    }
    engine.desktop.scripts.take();
    engine.service->refresh();

    QTEST(playerName(engine.service->activePlayer()), "expected");
    const QStringList lines = engine.log.take();
    const qsizetype entered = lines.lastIndexOf(QRegularExpression(QStringLiteral("^enterSysAudio.*")));
    QTEST(entered == lines.size() - 1 ? lines[entered - 1] : lines.last(), "lastLine");

    // What is disabled or does not run is never scripted.
    const QStringList scripts = engine.desktop.scripts.take();
    QVERIFY((sources & 1) != 0 || !scripts.contains(PlayerScripts::status(Player::appleMusic)));
    QVERIFY(spotify != QStringLiteral("off") || !scripts.contains(PlayerScripts::status(Player::spotify)));
}

void ArbitrationTest::clearsOnce()
{
    EngineFixture engine(3);
    engine.setState(Player::appleMusic, QStringLiteral("playing"));
    engine.start();
    QCOMPARE(engine.service->title(), QStringLiteral("Song"));
    engine.quit(Player::appleMusic);
    const QSignalSpy cleared(engine.service.get(), &NowPlayingService::titleChanged);
    engine.service->refresh();
    engine.service->refresh();
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(engine.service->title(), QStringLiteral("Not Playing"));
    QCOMPARE(engine.service->artist() + engine.service->album(), QString());
    QCOMPARE(engine.service->duration() + engine.service->elapsed(), 0.0);
    QVERIFY(!engine.service->isPlaying());

    // The same track counts as new after that.
    engine.recentlyPlayed.clear();
    engine.setState(Player::appleMusic, QStringLiteral("playing"));
    engine.service->refresh();
    QVERIFY(engine.told.contains(QStringLiteral("played Song|Band|Album|appleMusic")));
}

void ArbitrationTest::adoptsWholeStatus()
{
    EngineFixture engine(3);
    engine.setState(Player::spotify, QStringLiteral("playing"));
    engine.start();
    const NowPlayingService& service = *engine.service;
    QCOMPARE(service.title() + u'|' + service.artist() + u'|' + service.album(),
             QStringLiteral("Tide|Shore|Sea"));
    QCOMPARE(service.duration(), 215.0);
    QCOMPARE(service.elapsed(), 30.5);
    QVERIFY(service.isPlaying());
    QCOMPARE(engine.told,
             QStringList({QStringLiteral("queue"), QStringLiteral("played Tide|Shore|Sea|spotify")}));
    QCOMPARE(engine.log.take(),
             QStringList({QStringLiteral("refresh: srcs=3 am=false sp=true active=none stuck=false"),
                          QStringLiteral("refresh: -> spotify (playing)")}));
}

void ArbitrationTest::countsNewTracksByTitleAndArtist()
{
    EngineFixture engine(3);
    engine.reply(Player::appleMusic, QStringLiteral("A-B|||C|||One|||9.0|||0.0|||true|||1"));
    engine.start();
    engine.told.clear();
    // The same song on another album is the same track; so is what reads alike once joined.
    engine.reply(Player::appleMusic, QStringLiteral("A-B|||C|||Two|||9.0|||0.0|||true|||1"));
    engine.service->refresh();
    engine.reply(Player::appleMusic, QStringLiteral("A|||B-C|||Two|||9.0|||0.0|||true|||1"));
    engine.service->refresh();
    QVERIFY(engine.told.filter(QStringLiteral("played")).isEmpty());
    engine.reply(Player::appleMusic, QStringLiteral("A|||B|||Two|||9.0|||0.0|||true|||1"));
    engine.service->refresh();
    QCOMPARE(engine.told.filter(QStringLiteral("played")),
             QStringList(QStringLiteral("played A|B|Two|appleMusic")));
}

void ArbitrationTest::pauseTailIsNotNewSound()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, QStringLiteral("playing"));
    engine.start();
    engine.setState(Player::appleMusic, QStringLiteral("paused"));
    engine.notifyMusic({{QStringLiteral("Player State"), QStringLiteral("Paused")}});
    engine.desktop.runLoop.advance(0.7);
    engine.hear(0.5F);
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
    engine.desktop.runLoop.advance(0.8);
    engine.hear(0.5F);
    QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
}

void ArbitrationTest::engagementOutlivesSilence()
{
    EngineFixture engine;
    engine.start();
    engine.hear(0.5F);
    engine.setState(Player::appleMusic, QStringLiteral("paused"));
    engine.hear(0);
    engine.desktop.runLoop.advance(7.9);
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
    engine.desktop.runLoop.advance(0.2);
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
    QVERIFY(!engine.service->isPlaying());

    // A player's "Paused" ends the engagement at once.
    engine.hear(0.5F);
    QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
    engine.hear(0);
    engine.notifyMusic({{QStringLiteral("Player State"), QStringLiteral("Paused")}});
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
}

void ArbitrationTest::liveSoundTakesOverAtOnce()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, QStringLiteral("paused"));
    engine.start();
    engine.hear(0.02F); // not above the threshold
    QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
    engine.log.take();
    engine.hear(0.021F);
    QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
    QCOMPARE(engine.service->title(), QStringLiteral("System Audio"));
    QVERIFY(engine.bridge->isEnabled());
    QCOMPARE(engine.capture->starts, 1);
    QCOMPARE(engine.log.take().last(), QStringLiteral("enterSysAudio: prevActive=appleMusic fresh=true "
                                                      "bridgeEnabled=false bridgeLive=true"));
}

void ArbitrationTest::playerTakesDisplayBack()
{
    EngineFixture engine;
    engine.start();
    engine.hear(0.5F);
    engine.setState(Player::spotify, QStringLiteral("playing"));
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::spotify);
    engine.hear(0.5F); // its own sound
    QCOMPARE(engine.service->activePlayer(), Player::spotify);
}

void ArbitrationTest::showsHysteresis()
{
    EngineFixture engine;
    engine.start();
    engine.enterSystemAudio();
    const auto hear = [&engine](int frames, float level) {
        for (int i = 0; i < frames; ++i) {
            engine.hear(level);
        }
        return engine.service->isPlaying();
    };
    QVERIFY(hear(6, 0.5F));
    QVERIFY(hear(14, 0));
    QVERIFY(!hear(1, 0));
    QVERIFY(!hear(5, 0.5F));
    QVERIFY(!hear(1, 0)); // starts the count anew
    QVERIFY(!hear(5, 0.5F));
    QVERIFY(hear(1, 0.5F));

    // What has fallen silent for so long that it is not live any more stays stopped.
    QVERIFY(!hear(15, 0));
    Q_EMIT engine.capture->liveChanged(false);
    Q_EMIT engine.capture->bandsPublished({0, 0, 0, 0});
    QVERIFY(!engine.service->isPlaying());
}

void ArbitrationTest::entersSystemAudioQuietlyTheSecondTime()
{
    EngineFixture engine;
    engine.start();
    engine.enterSystemAudio();
    QSignalSpy title(engine.service.get(), &NowPlayingService::titleChanged);
    QSignalSpy active(engine.service.get(), &NowPlayingService::activePlayerChanged);
    QSignalSpy artwork(engine.service.get(), &NowPlayingService::artworkChanged);
    engine.service->refresh();
    QCOMPARE(title.count() + active.count() + artwork.count(), 0);
    QVERIFY(engine.log.take().last().startsWith(
        QStringLiteral("enterSysAudio: prevActive=systemAudio fresh=false")));
}

void ArbitrationTest::ticks()
{
    EngineFixture engine(3);
    engine.reply(Player::appleMusic, QStringLiteral("S|||B|||A|||14.0|||12.5|||true|||1"));
    engine.start();
    engine.power->updateSettings(PowerMode::normal,
                                 [](PowerModeSettings& s) { s.driftRefreshSeconds = 100; });
    engine.desktop.scripts.take();
    engine.desktop.runLoop.advance(1);
    QCOMPARE(engine.service->elapsed(), 13.5);
    engine.desktop.runLoop.advance(3);
    QCOMPARE(engine.service->elapsed(), 14.0); // no further than the end
    QCOMPARE(engine.service->stats().topArtists(2), (QList{std::pair{QStringLiteral("B"), 4.0}}));
    QVERIFY(engine.desktop.scripts.take().isEmpty());

    // An interval of 0 asks every second.
    engine.power->updateSettings(PowerMode::normal, [](PowerModeSettings& s) { s.driftRefreshSeconds = 0; });
    engine.desktop.runLoop.advance(3);
    QCOMPARE(engine.desktop.scripts.take().size(), 3);
    QCOMPARE(engine.service->elapsed(), 12.5);
}

void ArbitrationTest::refreshesWhenTold_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("bundle");
    QTest::addColumn<bool>("isExpected");
    QTest::newRow("Music launched") << QStringLiteral("launched") << BundleId::music << true;
    QTest::newRow("Spotify quit") << QStringLiteral("terminated") << BundleId::spotify << true;
    QTest::newRow("Music jumped") << QStringLiteral("jumped") << BundleId::music << true;
    QTest::newRow("another program") << QStringLiteral("launched") << QStringLiteral("org.example.editor")
                                     << false;
    QTest::newRow("sources changed") << QStringLiteral("sources") << QString() << true;
}

void ArbitrationTest::refreshesWhenTold()
{
    QFETCH(QString, event);
    QFETCH(QString, bundle);
    EngineFixture engine(3);
    engine.start();
    engine.log.take();
    if (event == QStringLiteral("launched")) {
        Q_EMIT engine.desktop.workspace.applicationLaunched(bundle);
    } else if (event == QStringLiteral("terminated")) {
        Q_EMIT engine.desktop.workspace.applicationTerminated(bundle);
    } else if (event == QStringLiteral("jumped")) {
        Q_EMIT engine.desktop.workspace.playbackJumped(bundle);
    } else {
        engine.manager->toggle(AudioSource::spotify);
    }
    QVERIFY(engine.log.take().isEmpty()); // behind what is going on, not within it
    engine.desktop.runLoop.settle();
    QTEST(!engine.log.take().isEmpty(), "isExpected");
}

QTEST_GUILESS_MAIN(ArbitrationTest)
#include "arbitration_test.moc"
