#include "EngineFixture.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class ArbitrationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesSource_data();
    void choosesSource();
    void adoptsWholeStatus();
    void clearsOnce();
    void countsNewTracksByTitleAndArtist();
    void pauseTailIsNotNewSound();
    void engagementOutlivesSilence();
    void liveSoundTakesOverAtOnce();
    void showsHysteresis();
    void ticks();
    void refreshesWhenTold();
};

void ArbitrationTest::choosesSource_data()
{
    QTest::addColumn<QStringList>("words");
    for (const char* const row : {
             // enabled sources (Music 1, Spotify 2, system audio 4), what played before, Music, Spotify,
             // sound, what is shown
             "3 - paused playing quiet spotify",
             "3 - playing playing quiet appleMusic",
             "3 spotify playing playing quiet spotify",
             "3 spotify playing paused quiet appleMusic",
             "3 - paused paused quiet appleMusic",
             "3 - stopped paused quiet spotify",
             "7 appleMusic stopped stopped quiet none",
             "7 - error off quiet none",
             "2 - playing paused quiet spotify",
             "0 - playing playing quiet none",
             "7 - paused paused loud systemAudio",
             "7 - paused playing loud spotify",
             "3 - paused off loud appleMusic",
         }) {
        QTest::newRow(row) << QString::fromLatin1(row).split(u' ');
    }
}

void ArbitrationTest::choosesSource()
{
    QFETCH(const QStringList, words);
    const int sources = words[0].toInt();
    EngineFixture engine(sources);
    for (const Player before : {Player::appleMusic, Player::spotify}) {
        engine.setState(before, words[1] == playerName(before) ? u"playing"_s : u"off"_s);
    }
    engine.start();
    engine.setState(Player::appleMusic, words[2]);
    engine.setState(Player::spotify, words[3]);
    if (words[4] == u"loud") {
        engine.hear(0.5F);
    }
    engine.desktop.scripts.take();
    engine.service->refresh();
    QCOMPARE(playerName(engine.service->activePlayer()), words[5]);
    engine.hear(words[4] == u"loud" ? 0.5F : 0); // its own sound changes nothing
    QCOMPARE(playerName(engine.service->activePlayer()), words[5]);

    // What is disabled or does not run is never scripted.
    const QStringList scripts = engine.desktop.scripts.take();
    QVERIFY((sources & 1) != 0 || !scripts.contains(PlayerScripts::status(Player::appleMusic)));
    QVERIFY(words[3] != u"off" || !scripts.contains(PlayerScripts::status(Player::spotify)));
}

void ArbitrationTest::adoptsWholeStatus()
{
    EngineFixture engine(3);
    engine.setState(Player::spotify, u"playing"_s);
    engine.start();
    QCOMPARE(engine.shown(), u"Tide|Shore|Sea"_s);
    QCOMPARE(engine.service->duration(), 215.0);
    QCOMPARE(engine.service->elapsed(), 30.5);
    QVERIFY(engine.service->isPlaying());
    QCOMPARE(engine.queueRefreshes, 1);
    QCOMPARE(engine.played(), {u"Tide|Shore|Sea|spotify"_s});
    QCOMPARE(engine.log.take(), QStringList({u"refresh: srcs=3 am=false sp=true active=none stuck=false"_s,
                                             u"refresh: -> spotify (playing)"_s}));
}

void ArbitrationTest::clearsOnce()
{
    EngineFixture engine(3);
    engine.setState(Player::appleMusic, u"playing"_s);
    engine.start();
    engine.quit(Player::appleMusic);
    const QSignalSpy cleared(engine.service.get(), &NowPlayingService::titleChanged);
    engine.service->refresh();
    engine.service->refresh();
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(engine.shown(), u"Not Playing||"_s);
    QCOMPARE(engine.service->duration() + engine.service->elapsed(), 0.0);
    QVERIFY(!engine.service->isPlaying());

    // The same track counts as new after that.
    engine.recentlyPlayed->clear();
    engine.setState(Player::appleMusic, u"playing"_s);
    engine.service->refresh();
    QCOMPARE(engine.played(), {u"Song|Band|Album|appleMusic"_s});
}

void ArbitrationTest::countsNewTracksByTitleAndArtist()
{
    EngineFixture engine(3);
    // The same song on another album is the same track; so is what reads alike once joined.
    for (const char* const song : {"A-B|||C|||One", "A-B|||C|||Two", "A|||B-C|||Two", "A|||B|||Two"}) {
        engine.reply(Player::appleMusic, QString::fromLatin1(song) + u"|||9.0|||0.0|||true|||1"_s);
        engine.service ? engine.service->refresh() : engine.start();
    }
    QCOMPARE(engine.played(), QStringList({u"A|B|Two|appleMusic"_s, u"A-B|C|One|appleMusic"_s}));
}

void ArbitrationTest::pauseTailIsNotNewSound()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, u"playing"_s);
    engine.start();
    engine.setState(Player::appleMusic, u"paused"_s);
    engine.notify(Player::appleMusic, {{u"Player State"_s, u"Paused"_s}});
    for (const auto& [seconds, shown] : {std::pair(1.4, Player::appleMusic), {0.2, Player::systemAudio}}) {
        engine.desktop.runLoop.advance(seconds);
        engine.hear(0.5F);
        engine.service->refresh();
        QCOMPARE(engine.service->activePlayer(), shown);
    }
}

void ArbitrationTest::engagementOutlivesSilence()
{
    EngineFixture engine;
    engine.start();
    engine.hear(0.5F);
    engine.setState(Player::appleMusic, u"paused"_s);
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
    engine.notify(Player::appleMusic, {{u"Player State"_s, u"Paused"_s}});
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
}

void ArbitrationTest::liveSoundTakesOverAtOnce()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, u"paused"_s);
    engine.start();
    engine.hear(0.02F); // not above the threshold
    QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
    QSignalSpy title(engine.service.get(), &NowPlayingService::titleChanged);
    QSignalSpy artwork(engine.service.get(), &NowPlayingService::artworkChanged);
    engine.hear(0.021F);
    QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
    QCOMPARE(engine.shown(), u"System Audio||"_s);
    QVERIFY(engine.bridge->isEnabled());
    QCOMPARE(engine.capture->starts, 1);
    engine.service->refresh(); // enters again, and redraws nothing
    QCOMPARE(title.count() + artwork.count(), 1);
}

void ArbitrationTest::showsHysteresis()
{
    EngineFixture engine;
    engine.start();
    const auto hear = [&engine](int frames, float level) {
        for (int i = 0; i < frames; ++i) {
            engine.hear(level);
        }
        return engine.service->isPlaying();
    };
    QVERIFY(hear(7, 0.5F));
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

void ArbitrationTest::ticks()
{
    EngineFixture engine(3);
    engine.reply(Player::appleMusic, u"S|||B|||A|||14.0|||12.5|||true|||1"_s);
    engine.start();
    const auto setInterval = [&engine](int seconds) {
        engine.power->updateSettings(PowerMode::normal,
                                     [=](PowerModeSettings& s) { s.driftRefreshSeconds = seconds; });
    };
    setInterval(100);
    engine.desktop.scripts.take();
    engine.desktop.runLoop.advance(1);
    QCOMPARE(engine.service->elapsed(), 13.5);
    engine.desktop.runLoop.advance(3);
    QCOMPARE(engine.service->elapsed(), 14.0); // no further than the end
    QCOMPARE(engine.service->stats().topArtists(2), (QList{std::pair{u"B"_s, 4.0}}));
    QVERIFY(engine.desktop.scripts.take().isEmpty());

    setInterval(0); // asks every second
    engine.desktop.runLoop.advance(3);
    QCOMPARE(engine.desktop.scripts.take().size(), 3);
    QCOMPARE(engine.service->elapsed(), 12.5);
}

void ArbitrationTest::refreshesWhenTold()
{
    EngineFixture engine(3);
    engine.setState(Player::appleMusic, u"playing"_s);
    engine.start();
    FakeWorkspace& workspace = engine.desktop.workspace;
    const auto questions = [&engine](const auto& happen) {
        engine.desktop.scripts.take();
        happen();
        // Behind what is going on, not within it.
        return engine.desktop.scripts.take().isEmpty()
                   ? (engine.desktop.runLoop.settle(), engine.desktop.scripts.take().size())
                   : -1;
    };
    QCOMPARE(questions([&] { Q_EMIT workspace.applicationLaunched(BundleId::music); }), 1);
    QCOMPARE(questions([&] { Q_EMIT workspace.applicationTerminated(BundleId::spotify); }), 1);
    QCOMPARE(questions([&] { Q_EMIT workspace.playerOutdated(BundleId::music); }), 1);
    QCOMPARE(questions([&] { engine.manager->toggle(AudioSource::spotify); }), 1);
    QCOMPARE(questions([&] { Q_EMIT workspace.applicationLaunched(u"org.example.editor"_s); }), 0);
}

QTEST_GUILESS_MAIN(ArbitrationTest)
#include "arbitration_test.moc"
