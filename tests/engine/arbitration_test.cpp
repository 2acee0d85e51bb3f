#include "EngineFixture.h"

#include <QtTest>

class ArbitrationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesSource()
    {
        // Enabled sources (Music 1, Spotify 2, system audio 4), what played before, Music, Spotify, sound,
        // and what is shown.
        for (const QLatin1String row :
             {"3 - paused playing quiet spotify"_L1, "3 - playing playing quiet appleMusic"_L1,
              "3 spotify playing playing quiet spotify"_L1, "3 spotify playing paused quiet appleMusic"_L1,
              "3 - paused paused quiet appleMusic"_L1, "3 - stopped paused quiet spotify"_L1,
              "7 appleMusic stopped stopped quiet none"_L1, "7 - error off quiet none"_L1,
              "2 - playing paused quiet spotify"_L1, "0 - playing playing quiet none"_L1,
              "7 - paused paused loud systemAudio"_L1, "7 - paused playing loud spotify"_L1,
              "3 - paused off loud appleMusic"_L1}) {
            const QStringList words = QString(row).split(u' ');
            const int sources = words[0].toInt();
            EngineFixture engine(sources, words[1] == u"appleMusic" ? u"playing"_s : u"off"_s,
                                 words[1] == u"spotify" ? u"playing"_s : u"off"_s);
            engine.setState(Player::appleMusic, words[2]);
            engine.setState(Player::spotify, words[3]);
            if (words[4] == u"loud") {
                engine.hear(0.5F);
            }
            engine.desktop.scripts.take();
            engine.service->refresh();
            QCOMPARE(playerName(engine.service->activePlayer()) + u" for " + row, words[5] + u" for " + row);
            engine.hear(words[4] == u"loud" ? 0.5F : 0); // its own sound changes nothing
            QCOMPARE(playerName(engine.service->activePlayer()), words[5]);

            // What is disabled or does not run is never scripted.
            const QStringList scripts = engine.desktop.scripts.take();
            QVERIFY((sources & 1) != 0 || !scripts.contains(PlayerScripts::status(Player::appleMusic)));
            QVERIFY(words[3] != u"off" || !scripts.contains(PlayerScripts::status(Player::spotify)));
        }
    }

    void clearsOnce()
    {
        EngineFixture engine(3, u"playing"_s);
        engine.quit(Player::appleMusic);
        const QSignalSpy cleared(engine.service.get(), &NowPlayingService::titleChanged);
        engine.service->refresh();
        engine.service->refresh();
        QCOMPARE(cleared.count(), 1);
        QCOMPARE(engine.shown(), u"Not Playing||"_s);
        QVERIFY(engine.service->duration() + engine.service->elapsed() == 0 && !engine.service->isPlaying());

        // The same track counts as new after that.
        engine.recentlyPlayed->clear();
        engine.setState(Player::appleMusic, u"playing"_s);
        engine.service->refresh();
        QCOMPARE(engine.played(), {u"Song|Band|Album|appleMusic"_s});
    }

    void countsNewTracksByTitleAndArtist()
    {
        EngineFixture engine(3);
        // The same song on another album is the same track; so is what reads alike once joined.
        for (const char* const song : {"A-B|||C|||One", "A-B|||C|||Two", "A|||B-C|||Two", "A|||B|||Two"}) {
            engine.reply(Player::appleMusic, QString::fromLatin1(song) + u"|||9.0|||0.0|||true|||1"_s);
            engine.service ? engine.service->refresh() : engine.start();
        }
        QCOMPARE(engine.played(), QStringList({u"A|B|Two|appleMusic"_s, u"A-B|C|One|appleMusic"_s}));
    }

    void pauseTailIsNotNewSound()
    {
        EngineFixture engine(7, u"playing"_s);
        engine.setState(Player::appleMusic, u"paused"_s);
        engine.notify(Player::appleMusic, {{u"Player State"_s, u"Paused"_s}});
        for (const auto& [seconds, shown] :
             {std::pair(1.4, Player::appleMusic), {0.2, Player::systemAudio}}) {
            engine.desktop.runLoop.advance(seconds);
            engine.hear(0.5F);
            engine.service->refresh();
            QCOMPARE(engine.service->activePlayer(), shown);
        }
    }

    void engagementOutlivesSilence()
    {
        EngineFixture engine;
        engine.start();
        engine.hear(0.5F);
        engine.setState(Player::appleMusic, u"paused"_s);
        engine.hear(0);
        QCOMPARE(engine.followedAfter(7.9), Player::systemAudio);
        QCOMPARE(engine.followedAfter(0.2), Player::appleMusic);
        QVERIFY(!engine.service->isPlaying());

        // A player's "Paused" ends the engagement at once.
        engine.hear(0.5F);
        QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
        engine.hear(0);
        engine.notify(Player::appleMusic, {{u"Player State"_s, u"Paused"_s}});
        QCOMPARE(engine.followedAfter(0), Player::appleMusic);
    }

    void liveSoundTakesOverAtOnce()
    {
        EngineFixture engine(7, u"paused"_s);
        engine.hear(0.02F); // not above the threshold
        QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
        const QSignalSpy title(engine.service.get(), &NowPlayingService::titleChanged);
        engine.hear(0.021F);
        QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
        QCOMPARE(engine.shown(), u"System Audio||"_s);
        QVERIFY(engine.bridge->isEnabled() && engine.capture->starts == 1);
        engine.service->refresh(); // enters again, and redraws nothing
        QCOMPARE(title.count(), 1);
    }

    void showsHysteresis()
    {
        EngineFixture engine;
        engine.start();
        const auto hear = [&engine](int frames, float level) {
            for (int i = 0; i < frames; ++i) {
                engine.hear(level);
            }
            return engine.service->isPlaying();
        };
        QVERIFY(hear(7, 0.5F) && hear(14, 0));
        QVERIFY(!hear(1, 0) && !hear(5, 0.5F));
        QVERIFY(!hear(1, 0) && !hear(5, 0.5F)); // starts the count anew
        QVERIFY(hear(1, 0.5F));
    }

    void ticks()
    {
        EngineFixture engine(3);
        engine.reply(Player::appleMusic, u"S|||B|||A|||14.0|||12.5|||true|||1"_s);
        engine.start();
        const auto setInterval = [&engine](int seconds) {
            engine.power->updateSettings(PowerMode::normal,
                                         [=](auto& s) { s.driftRefreshSeconds = seconds; });
        };
        setInterval(100);
        engine.desktop.scripts.take();
        engine.desktop.runLoop.advance(1);
        QCOMPARE(engine.service->elapsed(), 13.5);
        QCOMPARE(engine.service->timeRemainingText(), u"-0:00"_s);
        engine.desktop.runLoop.advance(3);
        QCOMPARE(engine.service->elapsed(), 14.0); // no further than the end
        QCOMPARE(engine.service->stats().topArtists(2), (QList{std::pair{u"B"_s, 4.0}}));
        QVERIFY(engine.desktop.scripts.take().isEmpty());

        setInterval(0); // asks every second
        engine.desktop.runLoop.advance(3);
        QCOMPARE(engine.desktop.scripts.take().size(), 3);
        QCOMPARE(engine.service->elapsed(), 12.5);

        setInterval(100); // at half the speed half a second passes in one
        engine.desktop.workspace.positions[BundleId::music] = {.seconds = 12.5, .rate = 0.5};
        Q_EMIT engine.desktop.workspace.playerMoved(BundleId::music);
        engine.desktop.runLoop.advance(1);
        QCOMPARE(engine.service->elapsed(), 13.0);
    }

    void refreshesWhenTold()
    {
        EngineFixture engine(3, u"playing"_s);
        FakeWorkspace& workspace = engine.desktop.workspace;
        const auto questions = [&engine](const auto& happen) {
            engine.desktop.scripts.take();
            happen();
            const bool isBehind = engine.desktop.scripts.sources.isEmpty(); // what is going on, not within it
            engine.desktop.runLoop.settle();
            return isBehind ? engine.desktop.scripts.take().size() : -1;
        };
        QCOMPARE(questions([&] { Q_EMIT workspace.applicationLaunched(BundleId::music); }), 1);
        QCOMPARE(questions([&] { Q_EMIT workspace.applicationTerminated(BundleId::spotify); }), 1);
        QCOMPARE(questions([&] { Q_EMIT workspace.playerOutdated(BundleId::music); }), 1);
        QCOMPARE(questions([&] { engine.manager->toggle(AudioSource::spotify); }), 1);
        QCOMPARE(questions([&] { Q_EMIT workspace.applicationLaunched(u"org.example.editor"_s); }), 0);
    }
};

QTEST_GUILESS_MAIN(ArbitrationTest)
#include "arbitration_test.moc"
