#include "EngineFixture.h"
#include "engine/UpNextReply.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QVariantMap musicInfo(const QString& state, const QString& name = u"New"_s)
{
    return {{u"Player State"_s, state},
            {u"Name"_s, name},
            {u"Artist"_s, u"Band"_s},
            {u"Album"_s, u"Album"_s},
            {u"Total Time"_s, qlonglong(180500)}};
}

QVariantMap spotifyInfo(const QString& state)
{
    return {{u"Player State"_s, state},        {u"Name"_s, u"Wave"_s},
            {u"Artist"_s, u"Shore"_s},         {u"Album"_s, u"Sea"_s},
            {u"Duration"_s, qlonglong(99000)}, {u"Playback Position"_s, 7.25}};
}

} // namespace

/// What players say: the replies to the engine's scripts, and notifications between them.
class ReportsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statusReplies_data();
    void statusReplies();
    void reactionReplies();
    void upNextReplies_data();
    void upNextReplies();
    void musicTells();
    void spotifyTellsItsPosition();
    void ignores_data();
    void ignores();
    void stopsOnlyItsOwn();
    void survivesNonsense_data();
    void survivesNonsense();
};

void ReportsTest::statusReplies_data()
{
    QTest::addColumn<Player>("player");
    QTest::addColumn<QString>("expected"); // length, position, play state, artwork; empty for no track
    const auto row = [](const char* reply, Player player, const char* expected) {
        QTest::newRow(reply) << player << QString::fromLatin1(expected);
    };
    constexpr Player music = Player::appleMusic;
    constexpr Player spotify = Player::spotify;
    row("STOPPED", music, "");
    row("S||| B |||Á|||215.5|||12.5", music, "");
    row("S||| B |||Á|||215.5|||-12.5|||true", music, "215.5 -12.5 true ");
    row("S||| B |||Á|||215.5|||0|||true|||77", music, "215.5 0 true ");
    row("S||| B |||Á|||215000|||0|||true||| \thttps://a/b\r\n", spotify, "215 0 true https://a/b");
    row("S||| B |||Á|||missing value|||0|||false||| \n ", spotify, "0 0 false ");
    row("S||| B |||Á|||0|||0|||True", music, "0 0 false ");
}

void ReportsTest::statusReplies()
{
    QFETCH(Player, player);
    const auto status = parseStatusReply(QString::fromUtf8(QTest::currentDataTag()), player);
    QString read;
    if (status) {
        QCOMPARE(status->title + status->artist + status->album, u"S B Á"_s);
        read = u"%1 %2 %3 %4"_s.arg(status->duration)
                   .arg(status->position)
                   .arg(status->isPlaying ? u"true"_s : u"false"_s, status->artworkUrl.value_or(QString()));
    }
    QTEST(read, "expected");
}

void ReportsTest::reactionReplies()
{
    QCOMPARE(parseReactionReply(std::nullopt), TrackReaction());
    QCOMPARE(parseReactionReply(u"True|TRUE"_s), TrackReaction());
    QCOMPARE(parseReactionReply(u"|true"_s), (TrackReaction{false, true}));
    QCOMPARE(parseReactionReply(u" true \n|\tfalse|true"_s), (TrackReaction{true, false}));
}

void ReportsTest::upNextReplies_data()
{
    QTest::addColumn<QList<UpNextTrack>>("expected");
    const auto track = [](qint64 index, const char* title, const char* artist) {
        return UpNextTrack{QString::fromUtf8(title), QString::fromUtf8(artist), index};
    };
    QTest::newRow("3|||B|||b###2|||Á|||a###") << QList{track(3, "B", "b"), track(2, "Á", "a")};
    QTest::newRow(" 3 ||| B |||b###4|||A|||a|||c") << QList{track(3, " B ", "b"), track(4, "A", "a")};
    QTest::newRow("3||||||###") << QList{track(3, "", "")};
    QTest::newRow("3|||B###C|||b###4|||A|||a###") << QList{track(4, "A", "a")}; // a title with "###"
    QTest::newRow("x|||B|||b###|||B|||b###1.0|||B|||b###99999999999999999999|||B|||b")
        << QList<UpNextTrack>();
}

void ReportsTest::upNextReplies()
{
    QTEST(parseUpNextReply(QString::fromUtf8(QTest::currentDataTag())), "expected");
    QVERIFY(parseUpNextReply(std::nullopt).isEmpty());
}

void ReportsTest::musicTells()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, u"playing"_s);
    engine.start();
    engine.notify(Player::appleMusic, musicInfo(u"Playing"_s));
    QCOMPARE(engine.shown(), u"New|Band|Album"_s);
    QCOMPARE(engine.service->duration(), 180.5);
    QCOMPARE(engine.service->elapsed(), 0.0);
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

void ReportsTest::spotifyTellsItsPosition()
{
    EngineFixture engine;
    engine.start();
    engine.notify(Player::spotify, spotifyInfo(u"Playing"_s));
    QCOMPARE(engine.service->activePlayer(), Player::spotify);
    QCOMPARE(engine.service->duration(), 99.0);
    QCOMPARE(engine.service->elapsed(), 7.25);
    QVariantMap later = spotifyInfo(u"Paused"_s);
    later[u"Playback Position"_s] = 60.0;
    engine.notify(Player::spotify, later);
    QCOMPARE(engine.service->elapsed(), 7.25); // the same track: left to the polls
    QCOMPARE(engine.played(), {u"Wave|Shore|Sea|spotify"_s});
    QCOMPARE(engine.queueRefreshes, 1);
}

void ReportsTest::ignores_data()
{
    QTest::addColumn<int>("sources");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<bool>("isTaken");
    const QVariantMap info = musicInfo(u"Playing"_s);
    QTest::newRow("taken") << 7 << u""_s << info << true;
    QTest::newRow("no user info") << 7 << u""_s << QVariantMap() << false;
    QTest::newRow("no state") << 7 << u""_s << QVariantMap{{u"Name"_s, u"New"_s}} << false;
    QTest::newRow("source disabled") << 6 << u""_s << info << false;
    QTest::newRow("just after a media key") << 7 << u"key"_s << info << false;
    QTest::newRow("Spotify plays") << 7 << u"Spotify"_s << info << false;
}

void ReportsTest::ignores()
{
    QFETCH(int, sources);
    QFETCH(QString, before);
    QFETCH(QVariantMap, info);
    EngineFixture engine(sources);
    engine.setState(Player::spotify, before == u"Spotify" ? u"playing"_s : u"off"_s);
    engine.start();
    if (before == u"key") {
        engine.hear(0.5F);
        engine.service->nextTrack();
        engine.desktop.runLoop.advance(4.9);
    }
    engine.notify(Player::appleMusic, info);
    QTEST(engine.service->title() == u"New", "isTaken");
}

void ReportsTest::stopsOnlyItsOwn()
{
    EngineFixture engine;
    engine.setState(Player::spotify, u"playing"_s);
    engine.start();
    engine.notify(Player::appleMusic, {{u"Player State"_s, u"Stopped"_s}});
    QVERIFY(engine.service->isPlaying());
    engine.notify(Player::spotify, {{u"Player State"_s, u"Stopped"_s}});
    QVERIFY(!engine.service->isPlaying());
    QCOMPARE(engine.service->title(), u"Tide"_s); // only a refresh clears
}

void ReportsTest::survivesNonsense_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("state"); // title, length, position
    const auto row = [](const char* name, const char* key, const QVariant& value, const char* state) {
        QTest::newRow(name) << QString::fromLatin1(key) << value << QString::fromLatin1(state);
    };
    row("title is a number", "Name", 12, "Tide 99 30.5");
    row("length is a word", "Duration", u"long"_s, "Wave 215 7.25");
    row("length is infinite", "Duration", std::numeric_limits<double>::infinity(), "Wave 215 7.25");
    row("position is not a number", "Playback Position", std::nan(""), "Wave 99 0");
    row("artwork is a list", "Artwork URL", QStringList(), "Wave 99 7.25");
}

void ReportsTest::survivesNonsense()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    EngineFixture engine;
    engine.setState(Player::spotify, u"paused"_s);
    engine.start();
    QVariantMap info = spotifyInfo(u"Playing"_s);
    info[key] = value;
    engine.notify(Player::spotify, info);
    const NowPlayingService& service = *engine.service;
    QVERIFY(service.isPlaying());
    QTEST(u"%1 %2 %3"_s.arg(service.title()).arg(service.duration()).arg(service.elapsed()), "state");
}

QTEST_GUILESS_MAIN(ReportsTest)
#include "reports_test.moc"
