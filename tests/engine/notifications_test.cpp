#include "EngineFixture.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QVariantMap musicInfo(const QString& state, const QString& name = QStringLiteral("New"))
{
    return {{QStringLiteral("Player State"), state},
            {QStringLiteral("Name"), name},
            {QStringLiteral("Artist"), QStringLiteral("Band")},
            {QStringLiteral("Album"), QStringLiteral("Album")},
            {QStringLiteral("Total Time"), qlonglong(180500)}};
}

QVariantMap spotifyInfo(const QString& state)
{
    return {{QStringLiteral("Player State"), state},
            {QStringLiteral("Name"), QStringLiteral("Wave")},
            {QStringLiteral("Artist"), QStringLiteral("Shore")},
            {QStringLiteral("Album"), QStringLiteral("Sea")},
            {QStringLiteral("Duration"), qlonglong(99000)},
            {QStringLiteral("Playback Position"), 7.25},
            {QStringLiteral("Artwork URL"), QStringLiteral("http://127.0.0.1:1/2")}};
}

const QString playing = QStringLiteral("Playing");
const QString paused = QStringLiteral("Paused");
const QString stopped = QStringLiteral("Stopped");

} // namespace

class NotificationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesStateBetweenPolls();
    void spotifyBringsItsPosition();
    void keepsWhatIsNotTold();
    void ignores_data();
    void ignores();
    void stopsOnlyItsOwn();
    void survivesNonsense_data();
    void survivesNonsense();
};

void NotificationsTest::movesStateBetweenPolls()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, playing.toLower());
    engine.start();
    engine.told.clear();
    engine.notifyMusic(musicInfo(playing));
    QCOMPARE(engine.service->title(), QStringLiteral("New"));
    QCOMPARE(engine.service->duration(), 180.5);
    QCOMPARE(engine.service->elapsed(), 0.0);
    QCOMPARE(engine.told, QStringList(QStringLiteral("played New|Band|Album|appleMusic")));
    const int questions = engine.desktop.workspace.artworkQuestions;
    engine.desktop.runLoop.advance(0.17);
    QCOMPARE(engine.desktop.workspace.artworkQuestions, questions);
    engine.desktop.runLoop.advance(0.02);
    QCOMPARE(engine.desktop.workspace.artworkQuestions, questions + 1);

    // The same track again moves nothing but the play state, and no duration by half a second.
    QSignalSpy duration(engine.service.get(), &NowPlayingService::durationChanged);
    QVariantMap again = musicInfo(paused);
    again[QStringLiteral("Total Time")] = 180900;
    engine.notifyMusic(again);
    QCOMPARE(duration.count(), 0);
    QVERIFY(!engine.service->isPlaying());
    QCOMPARE(engine.told.size(), 1);
}

void NotificationsTest::spotifyBringsItsPosition()
{
    EngineFixture engine;
    engine.start();
    engine.notifySpotify(spotifyInfo(playing));
    QCOMPARE(engine.service->activePlayer(), Player::spotify);
    QCOMPARE(engine.service->duration(), 99.0);
    QCOMPARE(engine.service->elapsed(), 7.25);
    QCOMPARE(engine.told,
             QStringList({QStringLiteral("queue"), QStringLiteral("played Wave|Shore|Sea|spotify")}));
    QVariantMap later = spotifyInfo(paused);
    later[QStringLiteral("Playback Position")] = 60.0;
    engine.notifySpotify(later);
    QCOMPARE(engine.service->elapsed(), 7.25); // the same track: left to the polls
    QCOMPARE(engine.told.size(), 2);
}

void NotificationsTest::keepsWhatIsNotTold()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, paused.toLower());
    engine.start();
    engine.notifyMusic(
        {{QStringLiteral("Player State"), playing}, {QStringLiteral("Name"), QStringLiteral("X")}});
    QCOMPARE(engine.service->title() + engine.service->artist() + engine.service->album(),
             QStringLiteral("XBandAlbum"));
    QCOMPARE(engine.service->duration(), 200.5);
}

void NotificationsTest::ignores_data()
{
    QTest::addColumn<int>("sources");
    QTest::addColumn<bool>("isStuck");
    QTest::addColumn<bool>("isSpotifyPlaying");
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("taken") << 7 << false << false << musicInfo(playing) << true;
    QTest::newRow("no user info") << 7 << false << false << QVariantMap() << false;
    QTest::newRow("source disabled") << 6 << false << false << musicInfo(playing) << false;
    QTest::newRow("media key just sent") << 7 << true << false << musicInfo(playing) << false;
    QTest::newRow("Spotify plays") << 7 << false << true << musicInfo(playing) << false;
    QTest::newRow("no state") << 7 << false << false
                              << QVariantMap{{QStringLiteral("Name"), QStringLiteral("New")}} << false;
}

void NotificationsTest::ignores()
{
    QFETCH(int, sources);
    QFETCH(bool, isStuck);
    QFETCH(bool, isSpotifyPlaying);
    QFETCH(QVariantMap, info);
    EngineFixture engine(sources);
    if (isSpotifyPlaying) {
        engine.setState(Player::spotify, playing.toLower());
    }
    engine.start();
    if (isStuck) {
        engine.enterSystemAudio();
        engine.service->nextTrack();
        engine.desktop.runLoop.advance(4.9);
    }
    engine.notifyMusic(info);
    QTEST(engine.service->title() == QStringLiteral("New"), "isTaken");
}

void NotificationsTest::stopsOnlyItsOwn()
{
    EngineFixture engine;
    engine.setState(Player::spotify, playing.toLower());
    engine.start();
    engine.notifyMusic({{QStringLiteral("Player State"), stopped}});
    QVERIFY(engine.service->isPlaying());
    engine.notifySpotify({{QStringLiteral("Player State"), stopped}});
    QVERIFY(!engine.service->isPlaying());
    QCOMPARE(engine.service->title(), QStringLiteral("Tide")); // only a refresh clears
}

void NotificationsTest::survivesNonsense_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("title is a number") << QStringLiteral("Name") << QVariant(12);
    QTest::newRow("length is a word") << QStringLiteral("Duration") << QVariant(QStringLiteral("long"));
    QTest::newRow("length is infinite") << QStringLiteral("Duration") << QVariant(infinity);
    QTest::newRow("position is not a number")
        << QStringLiteral("Playback Position") << QVariant(std::nan(""));
    QTest::newRow("artwork is a list") << QStringLiteral("Artwork URL") << QVariant(QStringList());
}

void NotificationsTest::survivesNonsense()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    EngineFixture engine;
    engine.setState(Player::spotify, paused.toLower());
    engine.start();
    QVariantMap info = spotifyInfo(playing);
    info[key] = value;
    engine.notifySpotify(info);
    QVERIFY(engine.service->isPlaying());
    QVERIFY(std::isfinite(engine.service->duration()) && std::isfinite(engine.service->elapsed()));
    QVERIFY(!engine.service->title().isEmpty());
}

QTEST_GUILESS_MAIN(NotificationsTest)
#include "notifications_test.moc"
