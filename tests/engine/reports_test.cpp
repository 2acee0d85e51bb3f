#include "EngineFixture.h"
#include "engine/UpNextReply.h"

#include <QtTest>

namespace {

QVariantMap musicInfo(const QString& state)
{
    return {{u"Player State"_s, state},
            {u"Name"_s, u"New"_s},
            {u"Artist"_s, u"Band"_s},
            {u"Album"_s, u"Album"_s},
            {u"Total Time"_s, qlonglong(180500)}};
}

const QVariantMap wave = {{u"Player State"_s, u"Playing"_s}, {u"Name"_s, u"Wave"_s},
                          {u"Artist"_s, u"Shore"_s},         {u"Album"_s, u"Sea"_s},
                          {u"Duration"_s, qlonglong(99000)}, {u"Playback Position"_s, 7.25}};

} // namespace

/// What players say: the replies to the engine's scripts, and notifications between them.
class ReportsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statusReplies()
    {
        constexpr Player music = Player::appleMusic;
        constexpr Player spotify = Player::spotify;
        const std::vector<std::tuple<Player, QString, QString>> rows = {
            // what stands behind the album; length, position, play state, artwork, or nothing for no track
            {music, u"215.5|||12.5"_s, u""_s},
            {music, u"215.5|||-12.5|||true"_s, u"215.5 -12.5 true "_s},
            {music, u"215.5|||0|||true|||77"_s, u"215.5 0 true "_s},
            {spotify, u"215000|||0|||true||| \thttps://a/b\r\n"_s, u"215 0 true https://a/b"_s},
            {spotify, u"missing value|||0|||false||| \n "_s, u"0 0 false "_s},
        };
        for (const auto& [player, reply, expected] : rows) {
            const auto status = parseStatusReply(u"S||| B |||Á|||"_s + reply, player);
            QCOMPARE(status.has_value(), !expected.isEmpty());
            if (status) {
                QCOMPARE(status->title + status->artist + status->album, u"S B Á"_s);
                const QString times = u"%1 %2 "_s.arg(status->duration).arg(status->position);
                const QString isPlaying = boolText(status->isPlaying) + u' ';
                QCOMPARE(times + isPlaying + status->artworkUrl.value_or(QString()), expected);
            }
        }
        QVERIFY(!parseStatusReply(u"STOPPED"_s, music));
    }

    void upNextReplies()
    {
        using Tracks = QList<UpNextTrack>;
        const std::vector<std::pair<QString, Tracks>> rows = {
            {u"3|||B|||b###2|||Á|||a###"_s, {{u"B"_s, u"b"_s, 3}, {u"Á"_s, u"a"_s, 2}}},
            {u" 3 ||| B |||b###4|||A|||a|||c"_s, {{u" B "_s, u"b"_s, 3}, {u"A"_s, u"a"_s, 4}}},
            {u"3|||B###C|||b###4|||A|||a###"_s, {{u"A"_s, u"a"_s, 4}}}, // a title with "###"
            {u"x|||B|||b###|||B|||b###1.0|||B|||b###99999999999999999999|||B|||b"_s, {}},
            {QString(), {}}};
        for (const auto& [reply, expected] : rows) {
            QCOMPARE(parseUpNextReply(reply), expected);
        }
    }

    void musicTells()
    {
        EngineFixture engine(7, u"playing"_s);
        engine.notify(Player::appleMusic, musicInfo(u"Playing"_s));
        QCOMPARE(engine.shown(), u"New|Band|Album"_s);
        QVERIFY(engine.service->duration() == 180.5 && engine.service->elapsed() == 0);
        QCOMPARE(engine.played().first(), u"New|Band|Album|appleMusic"_s);
        const int questions = engine.desktop.workspace.artworkQuestions;
        engine.desktop.runLoop.advance(0.17);
        QCOMPARE(engine.desktop.workspace.artworkQuestions, questions);
        engine.desktop.runLoop.advance(0.02);
        QCOMPARE(engine.desktop.workspace.artworkQuestions, questions + 1);

        // The same track again moves nothing but the play state, and no duration by half a second.
        QSignalSpy duration(engine.service.get(), &NowPlayingService::durationChanged);
        QVariantMap again = musicInfo(u"Paused"_s);
        again[u"Total Time"_s] = 180900;
        engine.notify(Player::appleMusic, again);
        QCOMPARE(duration.count(), 0);
        QVERIFY(!engine.service->isPlaying());
        QCOMPARE(engine.played().size(), 2);

        // What is not told stays.
        engine.notify(Player::appleMusic, {{u"Player State"_s, u"Playing"_s}, {u"Name"_s, u"X"_s}});
        QCOMPARE(engine.shown(), u"X|Band|Album"_s);
        QCOMPARE(engine.service->duration(), 180.5);
    }

    void spotifyTellsItsPosition()
    {
        EngineFixture engine;
        engine.start();
        engine.notify(Player::spotify, wave);
        QCOMPARE(engine.service->activePlayer(), Player::spotify);
        QVERIFY(engine.service->duration() == 99 && engine.service->elapsed() == 7.25);
        QVariantMap later = wave;
        later[u"Playback Position"_s] = 60.0;
        engine.notify(Player::spotify, later);
        QCOMPARE(engine.service->elapsed(), 7.25); // the same track: left to the polls
        QCOMPARE(engine.played(), {u"Wave|Shore|Sea|spotify"_s});
        QCOMPARE(engine.queueRefreshes, 1);
    }

    void ignores()
    {
        const QVariantMap info = musicInfo(u"Playing"_s);
        const std::vector<std::tuple<int, QString, QVariantMap, bool>> rows = {
            // enabled sources, what Spotify does, what Music tells, and whether it is taken
            {7, u"off"_s, info, true},
            {7, u"off"_s, {{u"Name"_s, u"New"_s}}, false},
            {6, u"off"_s, info, false},
            {7, u"playing"_s, info, false}};
        for (const auto& [sources, spotify, told, isTaken] : rows) {
            EngineFixture engine(sources, u"off"_s, spotify);
            engine.notify(Player::appleMusic, told);
            QCOMPARE(engine.service->title() == u"New", isTaken);
        }
        EngineFixture engine(7, u"off"_s);
        engine.hear(0.5F);
        engine.service->nextTrack(); // by a media key
        engine.desktop.runLoop.advance(4.9);
        engine.notify(Player::appleMusic, info);
        QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
    }

    void stopsOnlyItsOwn()
    {
        EngineFixture engine(7, u"off"_s, u"playing"_s);
        for (const auto& [player, isPlaying] :
             {std::pair(Player::appleMusic, true), {Player::spotify, false}}) {
            engine.notify(player, {{u"Player State"_s, u"Stopped"_s}});
            QCOMPARE(engine.service->isPlaying(), isPlaying);
            QCOMPARE(engine.service->title(), u"Tide"_s); // only a refresh clears
        }
    }

    void survivesNonsense()
    {
        const std::vector<std::tuple<QString, QVariant, QString>> rows = {
            // title, length and position then
            {u"Name"_s, 12, u"Tide 99 30.5"_s},
            {u"Duration"_s, u"long"_s, u"Wave 215 7.25"_s},
            {u"Duration"_s, std::numeric_limits<double>::infinity(), u"Wave 215 7.25"_s},
            {u"Playback Position"_s, std::nan(""), u"Wave 99 0"_s},
            {u"Artwork URL"_s, QStringList(), u"Wave 99 7.25"_s}};
        for (const auto& [key, value, expected] : rows) {
            EngineFixture engine(7, u"off"_s, u"paused"_s);
            QVariantMap info = wave;
            info[key] = value;
            engine.notify(Player::spotify, info);
            const NowPlayingService& now = *engine.service;
            QVERIFY(now.isPlaying());
            QCOMPARE(u"%1 %2 %3"_s.arg(now.title()).arg(now.duration()).arg(now.elapsed()), expected);
        }
    }
};

QTEST_GUILESS_MAIN(ReportsTest)
#include "reports_test.moc"
