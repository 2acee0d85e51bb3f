#include "EngineFixture.h"

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

/// What players tell between the polls.
class ReportsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clockReckons()
    {
        // the place at 100 s, the rate, the time; where it is, and how long until it is at 20 s
        for (const auto& [place, rate, time, at, until] :
             std::initializer_list<std::tuple<double, double, double, double, std::optional<double>>>{
                 {10, 1, 104, 14, 6},
                 {10, 1.5, 104, 16, 4 / 1.5},
                 {10, 0, 104, 10, {}},
                 {10, 1, 111, 21, {}},
                 {-2, 1, 101, 0, 21},
                 {10, 1, 200, 30, {}}}) {
            const TrackClock clock{.place = place, .since = {100}, .rate = rate, .length = 30};
            QCOMPARE(clock.at({time}), at);
            QCOMPARE(clock.until(20, {time}), until);
            QVERIFY(!clock.until(31, {time})); // behind the end
        }
    }

    /// What has elapsed is counted once a second; where the track is, is known at any time.
    void clockFollowsThePlayer()
    {
        EngineFixture engine(7, u"playing"_s);
        const auto place = [&](double seconds) {
            engine.desktop.runLoop.advance(seconds);
            return engine.service->position();
        };
        QSignalSpy changes(engine.service.get(), &NowPlayingService::clockChanged);
        QCOMPARE(place(2.4), 14.4);
        QVERIFY(changes.isEmpty());
        const QVariantMap same{{u"Name"_s, u"Song"_s}, {u"Artist"_s, u"Band"_s}};
        const auto tell = [&](const QString& state, const QVariantMap& info) {
            QVariantMap all = info;
            all[u"Player State"_s] = state;
            engine.notify(Player::appleMusic, all);
        };
        tell(u"Paused"_s, same);
        QCOMPARE(place(5), 14.4);
        tell(u"Playing"_s, same);
        QCOMPARE(place(0.6), 15.0);
        engine.service->seekTo(100);
        QCOMPARE(place(0.25), 100.25);
        tell(u"Playing"_s, musicInfo(u"Playing"_s));
        QCOMPARE(place(0.02), 0.02);
        tell(u"Stopped"_s, {});
        QCOMPARE(place(0.005), 0.02);
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
