#include "EngineFixture.h"
#include "engine/SongLink.h"

#include <QtTest>

class CommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reachThePlayerOnShow()
    {
        for (const auto& [command, statement, settling] : // seconds until the player is asked how it went
             {std::tuple(&NowPlayingService::togglePlayPause, u"playpause"_s, 0.3),
              {&NowPlayingService::nextTrack, u"next track"_s, 0.5},
              {&NowPlayingService::previousTrack, u"previous track"_s, 0.5}}) {
            for (const auto& [name, music, spotify] :
                 {std::tuple(u"Music"_s, u"playing"_s, u"off"_s), {u"Spotify"_s, u"off"_s, u"playing"_s}}) {
                EngineFixture engine(7, music, spotify);
                engine.desktop.scripts.take();
                (*engine.service.*command)();
                engine.desktop.runLoop.advance(settling - 0.01);
                QCOMPARE(engine.desktop.scripts.take(),
                         {u"tell application \"%1\" to %2"_s.arg(name, statement)});
                engine.desktop.runLoop.advance(0.02);
                QCOMPARE(engine.desktop.scripts.take(),
                         {PlayerScripts::status(engine.service->activePlayer())});
                QVERIFY(engine.keys.isEmpty());
            }
        }
    }

    void reachSystemAudioAsKeys()
    {
        EngineFixture engine;
        engine.start();
        engine.hear(0.5F);
        engine.service->togglePlayPause();
        engine.service->nextTrack();
        engine.service->previousTrack();
        QVERIFY(engine.keys == QList<int>({16, 17, 18}) && engine.desktop.scripts.take().isEmpty());

        // Where nothing is heard that could tell, the key itself does.
        Q_EMIT engine.capture->liveChanged(false);
        engine.service->togglePlayPause();
        QVERIFY(engine.service->isPlaying());
        engine.service->togglePlayPause();
        QVERIFY(!engine.service->isPlaying());
    }

    void reactions()
    {
        EngineFixture engine(3, u"playing"_s);
        engine.desktop.scripts.outcomes[PlayerScripts::reaction()] = {u"false|true"_s, {}, {}};
        QCOMPARE(engine.service->currentTrackReaction(), (TrackReaction{.loved = false, .disliked = true}));
        engine.desktop.scripts.take();
        engine.service->loveCurrentTrack();
        engine.service->dislikeCurrentTrack();
        QCOMPARE(engine.desktop.scripts.take(),
                 QStringList({PlayerScripts::loveMusic(), PlayerScripts::dislikeMusic()}));

        // Spotify can only be told of love, and only where that key does nothing else.
        EngineFixture other(3, u"off"_s, u"playing"_s);
        for (const bool canRate : {true, false}) {
            other.desktop.workspace.able.canRate = canRate;
            other.desktop.scripts.take();
            other.service->loveCurrentTrack();
            other.service->dislikeCurrentTrack();
            QCOMPARE(other.desktop.scripts.take(),
                     QStringList(canRate ? 1 : 0, PlayerScripts::loveSpotify()));
        }
        QVERIFY(other.service->supportsLoveAction() && !other.service->supportsDislikeAction());
    }

    void chooseTargetWithNothingOnShow()
    {
        // enabled sources, Music, Spotify, whom the command reaches
        for (const QLatin1String row :
             {"7 stopped stopped spotify"_L1, "7 stopped off appleMusic"_L1,
              "5 stopped stopped appleMusic"_L1, "7 off off key"_L1, "3 off off "_L1}) {
            const QStringList words = QString(row).split(u' ');
            EngineFixture engine(words[0].toInt(), words[1], words[2]);
            engine.desktop.scripts.take();
            engine.service->togglePlayPause();
            QStringList reached(engine.keys.size(), u"key"_s);
            for (const Player player : {Player::appleMusic, Player::spotify}) {
                const auto count = engine.desktop.scripts.sources.count(PlayerScripts::playPause(player));
                reached += QStringList(count, playerName(player));
            }
            QCOMPARE(reached.join(u' '), words[3]);
        }
    }

    void seek()
    {
        EngineFixture engine(3, u"off"_s, u"playing"_s);
        engine.desktop.scripts.take();
        engine.service->seekTo(90);
        QCOMPARE(engine.service->elapsed(), 90.0);
        QCOMPARE(engine.desktop.scripts.take(),
                 {u"tell application \"Spotify\" to set player position to 90.0"_s});
        engine.desktop.runLoop.advance(0.3);
        QCOMPARE(engine.service->elapsed(), 30.5); // the player's word
        engine.service->seekTo(std::nan(""));
        QCOMPARE(engine.service->elapsed(), 30.5);
    }

    void pauseHijackers()
    {
        EngineFixture engine(7, u"paused"_s);
        engine.hear(0.5F);
        engine.service->nextTrack();
        engine.desktop.runLoop.setDateForward(-3600); // what the user's clock says is no matter
        engine.desktop.scripts.take();
        engine.desktop.runLoop.advance(0.39);
        QVERIFY(!engine.desktop.scripts.take().contains(PlayerScripts::pauseIfPlaying(Player::appleMusic)));
        engine.desktop.runLoop.advance(0.02);
        QCOMPARE(engine.desktop.scripts.take(), {PlayerScripts::pauseIfPlaying(Player::appleMusic)});

        // The display stays for five seconds, even if a player has grabbed the key.
        engine.setState(Player::appleMusic, u"playing"_s);
        QCOMPARE(engine.followedAfter(4.5), Player::systemAudio);
        QCOMPARE(engine.followedAfter(0.2), Player::appleMusic);
    }

    void sleep()
    {
        EngineFixture engine(3, u"playing"_s);
        QList<double> published;
        connect(engine.service.get(), &NowPlayingService::sleepTimerRemainingChanged, this,
                [&] { published << engine.service->sleepTimerRemaining().value_or(-1); });
        const auto pauses = [&engine](double seconds) {
            engine.desktop.runLoop.advance(seconds);
            return engine.desktop.scripts.take().count(PlayerScripts::playPause(Player::appleMusic));
        };
        engine.service->setSleepTimer(1);
        QCOMPARE(pauses(59), 0);
        QVERIFY(published.size() == 60 && published.first() == 60 && published.last() == 1);
        QCOMPARE(pauses(1), 1);
        QCOMPARE(published.last(), -1.0);

        // A new timer replaces the old one, a cancelled one does nothing, and none starts what is paused.
        engine.service->setSleepTimer(1);
        engine.service->setSleepTimer(2);
        QCOMPARE(pauses(119), 0);
        engine.service->cancelSleepTimer();
        QVERIFY(pauses(2) == 0 && !engine.service->sleepTimerRemaining());
        engine.setState(Player::appleMusic, u"paused"_s);
        engine.service->refresh();
        engine.service->setSleepTimer(1);
        QCOMPARE(pauses(61), 0);
    }

    void linksToSpotify()
    {
        const QString link = songLink(Player::spotify, u"50% Röck & Roll?"_s, u"Band"_s, MemoryDefaults());
        QCOMPARE(link, u"https://open.spotify.com/search/50%25%20R%C3%B6ck%20&%20Roll?%20Band"_s);
    }
};

QTEST_GUILESS_MAIN(CommandsTest)
#include "commands_test.moc"
