#include "Mirror.h"

#include "audio/MediaKeys.h"
#include "engine/PlayerScripts.h"
#include "platform/BundleId.h"

#include <QDBusObjectPath>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace scripts = PlayerScripts;

namespace {

const QString status = QStringLiteral("PlaybackStatus");
const QString metadata = QStringLiteral("Metadata");
const QString position = QStringLiteral("Position");
const QString playing = QStringLiteral("Playing");
const QString paused = QStringLiteral("Paused");
const QString stopped = QStringLiteral("Stopped");
const QString one = QStringLiteral("One");
const QString two = QStringLiteral("Two");
const QString everything = QStringLiteral("*");

QVariantMap track(int number, const char* title, const char* artist)
{
    return MprisStandIn::metadata(QStringLiteral("/t/%1").arg(number), QString::fromUtf8(title),
                                  QString::fromUtf8(artist), QStringLiteral("Hours"), 215.5);
}

/// A player that plays "One" unless the test says otherwise, and a mirror that has seen it.
struct Scene {
    explicit Scene(const QVariantMap& properties = {}, const QString& name = QStringLiteral("mpv"))
        : player(name)
    {
        player.set(MprisStandIn::playing(Mirror::song(one)));
        player.set(properties);
        isSeen = QTest::qWaitFor([this] { return !mirror.roster.all().isEmpty() && isReady(); });
    }

    bool isReady() const { return mirror.roster.all().constFirst().isReachable; }

    MprisStandIn player;
    Mirror mirror;
    bool isSeen = false;
};

} // namespace

class MprisTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsRunningPlayers();
    void followsComingAndGoing();
    void tellsWhatSpotifyTells();
    void letsBurstsComeToRest();
    void bridgesGapsBetweenTracks();
    void replies_data();
    void replies();
    void effects_data();
    void effects();
    void switchesBetweenPlayers();
    void followsTheUsersChoiceOnly();
    void leavesPausedPlayersAlone();
    void survivesMutePlayer();
    void survivesNonsense();
    void keepsGoodTracks_data();
    void keepsGoodTracks();
    void survivesBusRestart();
};

void MprisTest::findsRunningPlayers()
{
    MprisStandIn player(QStringLiteral("mpv.instance-7"));
    player.set(MprisStandIn::playing(Mirror::song(one)));
    player.set({{position, qlonglong(42000000)}});
    Mirror mirror;
    QSignalSpy launched(&mirror.workspace, &Workspace::applicationLaunched);
    QTRY_COMPARE(launched.count(), 1);
    QCOMPARE(launched[0][0].toString(), BundleId::music);
    QCOMPARE(mirror.title(), one);
    QVERIFY(mirror.music()->position() >= 42 && mirror.music()->position() < 45);
    QVERIFY(mirror.posted.isEmpty()); // found, not changed
    QCOMPARE(mirror.automation.permission(BundleId::music), std::optional(Automation::granted));
    QCOMPARE(mirror.automation.permission(BundleId::spotify), std::optional(Automation::targetNotRunning));
    QCOMPARE(mirror.automation.permission(QStringLiteral("org.example.editor")), std::nullopt);
}

void MprisTest::followsComingAndGoing()
{
    Mirror mirror;
    QVERIFY(!mirror.workspace.isRunning(BundleId::music));
    QSignalSpy launched(&mirror.workspace, &Workspace::applicationLaunched);
    QSignalSpy terminated(&mirror.workspace, &Workspace::applicationTerminated);
    {
        MprisStandIn player(QStringLiteral("vlc"));
        player.addName(QStringLiteral("vlc.instance12")); // one player, two names
        QTRY_COMPARE(launched.count(), 1);
        QCOMPARE(mirror.bus.players().size(), 1);
        player.change(MprisStandIn::playing(Mirror::song(one)));
        QTRY_COMPARE(mirror.posted, QStringList(QStringLiteral("apple: Playing One by Band")));
        QCOMPARE(mirror.last[QStringLiteral("Total Time")].toLongLong(), 200000);
    }
    QTRY_COMPARE(terminated.count(), 1);
    QVERIFY(!mirror.workspace.isRunning(BundleId::music));
    QCOMPARE(mirror.run(scripts::status(Player::appleMusic)), QStringLiteral("STOPPED"));
    QCOMPARE(mirror.run(scripts::playPause(Player::appleMusic)), QStringLiteral("error -600"));
}

void MprisTest::tellsWhatSpotifyTells()
{
    Scene scene({{metadata, QVariantMap()}, {position, qlonglong(7250000)}},
                QStringLiteral("spotify.instance77"));
    QVERIFY(scene.isSeen && !scene.mirror.workspace.isRunning(BundleId::music));
    QVariantMap wave = Mirror::song(QStringLiteral("Wave"), QStringLiteral("Shore"), 99.5);
    wave[QStringLiteral("mpris:artUrl")] = QStringLiteral("http://art/1");
    wave[QStringLiteral("mpris:length")] = QVariant::fromValue(qulonglong(99500000)); // as the real client
    scene.player.change(MprisStandIn::playing(wave));
    QTRY_COMPARE(scene.mirror.posted, QStringList(QStringLiteral("spotify: Playing Wave by Shore")));
    QCOMPARE(scene.mirror.last[QStringLiteral("Duration")].toLongLong(), 99500);
    QCOMPARE(scene.mirror.last[QStringLiteral("Artwork URL")].toString(), QStringLiteral("http://art/1"));
    QVERIFY(scene.mirror.last.contains(QStringLiteral("Playback Position")));
}

void MprisTest::letsBurstsComeToRest()
{
    Scene scene;
    QVERIFY(scene.isSeen);
    QVariantMap burst = {
        {QStringLiteral("xesam:title"), two},
        {QStringLiteral("mpris:trackid"), QVariant::fromValue(QDBusObjectPath(QStringLiteral("/t/2")))}};
    scene.player.change({{metadata, burst}});
    burst[QStringLiteral("xesam:artist")] = QStringLiteral("Solo");
    scene.player.change({{metadata, burst}});
    burst[QStringLiteral("mpris:length")] = 12000000;
    scene.player.change({{metadata, burst}});
    QTRY_COMPARE(scene.mirror.posted, QStringList(QStringLiteral("apple: Playing Two by Solo")));
    QCOMPARE(scene.mirror.last[QStringLiteral("Total Time")].toLongLong(), 12000);
    QCOMPARE(scene.mirror.last[QStringLiteral("Album")].toString(), QString()); // not the last track's
}

void MprisTest::bridgesGapsBetweenTracks()
{
    Scene scene;
    QVERIFY(scene.isSeen);
    scene.player.change({{status, stopped}, {metadata, QVariantMap()}});
    scene.player.change(MprisStandIn::playing(QVariantMap()));
    scene.player.change({{metadata, Mirror::song(two)}});
    QTRY_COMPARE(scene.mirror.posted, QStringList(QStringLiteral("apple: Playing Two by Band")));
    scene.player.change({{status, stopped}}); // for good
    QTRY_COMPARE(scene.mirror.posted.last(), QStringLiteral("apple: Stopped Two by Band"));
}

void MprisTest::replies_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("current"); // the number of the track; 0: none, -1: the player does not run
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("expected"); // "~" is a position that moves
    constexpr Player music = Player::appleMusic;
    const auto row = [](const char* name, const QString& script, int current, const QString& state,
                        const char* expected) {
        QTest::newRow(name) << script << current << state << QString::fromUtf8(expected);
    };
    row("plays", scripts::status(music), 1, playing, "Élan|||Ada|||Hours|||215.5|||~|||true|||/t/1");
    row("is paused", scripts::status(music), 2, paused,
        "Noon & Co|||Ada|||Hours|||215.5|||7.25|||false|||/t/2");
    row("is stopped", scripts::status(music), 1, stopped, "STOPPED");
    row("plays nothing", scripts::status(music), 0, playing, "STOPPED");
    row("does not run", scripts::status(music), -1, paused, "STOPPED");
    row("Spotify is paused", scripts::status(Player::spotify), 3, paused,
        "Dusk|||Bo|||Hours|||215500|||7.25|||false|||http://art/3");
    row("all that follow", scripts::upNextListing(8), 2, playing, "3|||Dusk|||Bo###4|||Élan|||Ada###");
    row("as many as asked for", scripts::upNextListing(1), 2, playing, "3|||Dusk|||Bo###");
    row("the copy goes on behind the first", scripts::upNextListing(1), 4, playing, "2|||Noon & Co|||Ada###");
    row("nothing plays, nothing follows", scripts::upNextListing(8), 0, playing, "");
    row("no ratings", scripts::reaction(), 1, playing, "false|false");
    row("probe in any case", scripts::automationProbe(QStringLiteral("mUsIc")), 1, playing, "0");
    row("probe of the unknown", scripts::automationProbe(QStringLiteral("Tapes")), 1, playing, "error -600");
}

void MprisTest::replies()
{
    QFETCH(QString, script);
    QFETCH(int, current);
    QFETCH(QString, state);
    QList<QVariantMap> tracks = {track(1, "Élan", "Ada"), track(2, "Noon & Co", "Ada"),
                                 track(3, "Dusk", "Bo"), track(4, "Élan", "Ada")};
    tracks[2][QStringLiteral("mpris:artUrl")] = QStringLiteral("http://art/3");
    MprisStandIn music(QStringLiteral("mpv"));
    MprisStandIn spotify(QStringLiteral("spotify"));
    for (MprisStandIn* const player : {&music, &spotify}) {
        player->setTracks(tracks);
        player->set({{status, state},
                     {position, qlonglong(7250000)},
                     {metadata, current > 0 ? tracks[current - 1] : QVariantMap()}});
        if (current < 0) {
            player->disown(QStringLiteral("org.mpris.MediaPlayer2.mpv"));
        }
    }
    // A comma in the numbers of people, never in those of replies.
    const auto restore = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German));
    Mirror mirror;
    QTRY_VERIFY(mirror.roster.player(PlayerRole::spotify) != nullptr);
    QTRY_VERIFY(mirror.roster.player(PlayerRole::spotify)->isReady());
    QFETCH(QString, expected);
    QTRY_COMPARE(mirror.run(script).replace(QRegularExpression(QStringLiteral(R"(\|7\.\d+\|\|\|true)")),
                                            QStringLiteral("|~|||true")),
                 expected);
}

void MprisTest::effects_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("id"); // of the track
    QTest::addColumn<QString>("expected");
    constexpr Player music = Player::appleMusic;
    const auto row = [](const QString& script, const QString& expected,
                        const QString& id = QStringLiteral("/t/1")) {
        QTest::newRow(qPrintable(script.simplified() + u' ' + id)) << script << id << expected;
    };
    row(scripts::playPause(music), QStringLiteral("PlayPause"));
    row(scripts::nextTrack(music), QStringLiteral("Next"));
    row(scripts::previousTrack(music), QStringLiteral("Previous"));
    row(scripts::pauseIfPlaying(music), QString());
    row(scripts::seek(music, 42.5), QStringLiteral("SetPosition /t/1 42500000"));
    row(scripts::seek(music, 4000), QStringLiteral("SetPosition /t/1 215500000")); // past the end
    row(scripts::seek(music, -3), QStringLiteral("SetPosition /t/1 0"));
    row(scripts::seek(music, 42.5), QStringLiteral("Seek 32500000"), QStringLiteral("spotify:track:1"));
    row(scripts::playPlaylistTrack(3), QStringLiteral("GoTo /t/3"));
    row(scripts::playPlaylistTrack(5), QString()); // behind the end
    row(scripts::musicStatement(QStringLiteral("set sound volume to 3")), QString());
    row(scripts::loveMusic(), QString());
}

void MprisTest::effects()
{
    QFETCH(QString, script);
    QFETCH(QString, id);
    QVariantMap current = track(1, "Dawn", "Ada");
    if (!id.startsWith(u'/')) {
        current[QStringLiteral("mpris:trackid")] = id;
    }
    MprisStandIn player(QStringLiteral("mpv"));
    player.set({{status, paused}, {position, qlonglong(10000000)}, {metadata, current}});
    player.setTracks({track(1, "Dawn", "Ada"), track(2, "Noon", "Ada"), track(3, "Dusk", "Bo")});
    Mirror mirror;
    QTRY_VERIFY(mirror.music() != nullptr && mirror.music()->trackList().tracks().size() == 3);
    QVERIFY(mirror.music()->isReady());
    mirror.run(script);
    mirror.workspace.open(QUrl(QStringLiteral("music://"))); // all before it has arrived by then
    QTRY_VERIFY(player.calls.contains(QStringLiteral("Raise")));
    player.calls.removeLast();
    QTEST(player.calls.join(u' '), "expected");
    if (script == scripts::seek(Player::appleMusic, 42.5)) {
        QCOMPARE(mirror.music()->position(), 42.5);
        QCOMPARE(player.property(position).toLongLong(), 42500000);
    }
}

void MprisTest::switchesBetweenPlayers()
{
    Scene scene;
    auto second = std::make_unique<MprisStandIn>(QStringLiteral("mpv.instance2"));
    second->set({{status, paused}, {metadata, Mirror::song(two)}});
    QTRY_COMPARE(scene.mirror.bus.players().size(), 2);
    QCOMPARE(scene.mirror.title(), one);
    QTRY_VERIFY(scene.mirror.bus.players().constLast()->isReady());
    second->change({{status, playing}}); // the latest to start
    QTRY_COMPARE(scene.mirror.posted, QStringList(QStringLiteral("apple: Playing Two by Band")));
    second->change({{status, paused}}); // the other one still plays
    QTRY_COMPARE(scene.mirror.posted.last(), QStringLiteral("apple: Playing One by Band"));
    scene.player.change({{status, paused}});
    QTRY_COMPARE(scene.mirror.posted.last(), QStringLiteral("apple: Paused One by Band"));
    QSignalSpy terminated(&scene.mirror.workspace, &Workspace::applicationTerminated);
    second.reset(); // had no role
    QTRY_COMPARE(scene.mirror.bus.players().size(), 1);
    QCOMPARE(terminated.count(), 0);
}

void MprisTest::followsTheUsersChoiceOnly()
{
    MprisStandIn other(QStringLiteral("mpv"));
    other.set(MprisStandIn::playing(Mirror::song(one)));
    Mirror mirror;
    mirror.defaults.setObject(QStringLiteral("pellar.linux.musicPlayer"), QStringLiteral("rhythmbox"));
    QTRY_VERIFY(!mirror.bus.players().isEmpty() && mirror.bus.players().constFirst()->isReady());
    QVERIFY(!mirror.workspace.isRunning(BundleId::music));
    other.change({{metadata, Mirror::song(two)}});
    MprisStandIn chosen(QStringLiteral("rhythmbox"));
    chosen.set({{status, paused}, {metadata, Mirror::song(QStringLiteral("Three"))}});
    QTRY_COMPARE(mirror.title(), QStringLiteral("Three"));
    other.change({{metadata, Mirror::song(one)}});
    QTRY_COMPARE(mirror.bus.players().constFirst()->state().track.title, one);
    QCOMPARE(mirror.title(), QStringLiteral("Three"));
    QVERIFY(mirror.posted.isEmpty());
}

/// A browser plays, a music player is paused and the proxy repeats the browser.
void MprisTest::leavesPausedPlayersAlone()
{
    Scene scene({{status, paused}});
    MprisStandIn browser(QStringLiteral("firefox.instance_1_22"));
    MprisStandIn proxy(QStringLiteral("playerctld"));
    for (MprisStandIn* const player : {&browser, &proxy}) {
        player->change(MprisStandIn::playing(Mirror::song(two)));
    }
    MediaKeys keys(scene.mirror.ports);
    for (const QString& state : {paused, playing}) {
        QTRY_VERIFY(std::ranges::count_if(scene.mirror.roster.all(), &MediaPlayer::isPlaying) ==
                    (state == paused ? 2 : 1));
        keys.send(MediaKeys::Key::playPause);
        QTRY_COMPARE(browser.property(status).toString(), state);
    }
    QCOMPARE(browser.calls, QStringList({QStringLiteral("PlayPause"), QStringLiteral("PlayPause")}));
    QVERIFY(scene.player.calls.isEmpty() && proxy.calls.isEmpty());
}

void MprisTest::survivesMutePlayer()
{
    Scene scene;
    QVERIFY(scene.isSeen);
    scene.player.failures[everything] = QString();
    QElapsedTimer timer;
    timer.start();
    scene.mirror.run(scripts::status(Player::appleMusic));
    scene.mirror.run(scripts::playPause(Player::appleMusic));
    QVERIFY2(timer.elapsed() < 1000, "waited for the player");

    // It is taken to stand still until it is heard again.
    const auto moves = [&scene] {
        const double before = scene.mirror.music()->position();
        QTest::qWait(20);
        return scene.mirror.music()->position() > before;
    };
    QTRY_VERIFY_WITH_TIMEOUT(!moves(), 5000);
    scene.player.failures.clear();
    scene.player.change({{metadata, Mirror::song(two)}});
    QTRY_COMPARE(scene.mirror.title(), two);
    QTRY_VERIFY(moves());
}

/// What cannot be read is as if it had not been told.
void MprisTest::survivesNonsense()
{
    Scene scene;
    QVERIFY(scene.isSeen);
    const auto state = scene.mirror.music()->state();
    const auto sayNonsense = [&scene](const QVariantMap& nonsense) {
        scene.player.announce(QStringLiteral("org.mpris.MediaPlayer2.Player"), nonsense);
        scene.player.seek(50000000); // all before it has arrived by then
        const bool isHeard = QTest::qWaitFor([&] { return scene.mirror.music()->position() >= 50; });
        scene.player.seek(0);
        return isHeard && QTest::qWaitFor([&] { return scene.mirror.music()->position() < 50; });
    };
    for (const QVariant& noStatus : {QVariant(QStringLiteral("Dancing")), QVariant(12)}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("unknown playback status")));
        QVERIFY(sayNonsense({{status, noStatus}, {QStringLiteral("Rate"), QStringLiteral("fast")}}));
        QVERIFY(scene.mirror.music()->state() == state);
    }
    for (const QVariant& noMetadata : {QVariant(7), QVariant(QStringList{QStringLiteral("a")})}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("metadata")));
        QVERIFY(sayNonsense({{metadata, noMetadata}, {position, QStringLiteral("here")}}));
        QVERIFY(scene.mirror.music()->state() == state);
    }
    QVERIFY(scene.mirror.posted.isEmpty());
    scene.player.change({{metadata, Mirror::song(two)}});
    QTRY_COMPARE(scene.mirror.posted, QStringList(QStringLiteral("apple: Playing Two by Band")));
}

void MprisTest::keepsGoodTracks_data()
{
    QTest::addColumn<QVariant>("tracks");
    QTest::addColumn<QString>("failing");
    const QVariant paths = QVariant::fromValue(
        QList{QDBusObjectPath(QStringLiteral("/t/8")), QDBusObjectPath(QStringLiteral("/t/9"))});
    QTest::newRow("a list of texts") << QVariant(QStringList{QStringLiteral("/t/1")}) << QString();
    QTest::newRow("a number") << QVariant(7) << QString();
    QTest::newRow("no such method") << paths << QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod");
    QTest::newRow("no answer") << paths << QStringLiteral("org.freedesktop.DBus.Error.NoReply");
}

void MprisTest::keepsGoodTracks()
{
    QFETCH(QVariant, tracks);
    QFETCH(QString, failing);
    Scene scene;
    const auto titles = [&scene] {
        QStringList all;
        for (const MprisTrack& each : scene.mirror.music()->trackList().tracks()) {
            all << each.title;
        }
        return all.join(u' ');
    };
    scene.player.setTracks({track(1, "Dawn", "Ada"), track(2, "Noon", "Ada")});
    QTRY_COMPARE(titles(), QStringLiteral("Dawn Noon"));
    if (!failing.isEmpty()) {
        scene.player.failures[QStringLiteral("GetTracksMetadata")] = failing;
    }
    scene.player.set({{QStringLiteral("Tracks"), tracks}});
    scene.player.asked.clear();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("track list")));
    scene.player.announceTracks();
    QTRY_VERIFY(scene.player.asked.contains(QStringLiteral("Tracks")));
    QTRY_VERIFY(failing.isEmpty() || scene.player.failed > 0);
    scene.player.seek(50000000); // the answer has arrived by then
    QTRY_VERIFY(scene.mirror.music()->position() >= 50);
    QCOMPARE(titles(), QStringLiteral("Dawn Noon"));
    scene.player.failures.clear();
    scene.player.setTracks({track(3, "Dusk", "Bo")});
    QTRY_COMPARE(titles(), QStringLiteral("Dusk"));
}

void MprisTest::survivesBusRestart()
{
    QTemporaryDir folder;
    const QString address = QStringLiteral("unix:path=") + folder.filePath(QStringLiteral("bus"));
    const auto startBus = [&](QProcess& daemon) {
        daemon.start(QStringLiteral("dbus-daemon"),
                     {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                      QStringLiteral("--print-address"), QStringLiteral("--address=") + address});
        return daemon.waitForReadyRead(10000);
    };
    const auto stopBus = [&](QProcess& daemon) {
        daemon.kill();
        daemon.waitForFinished();
        QFile::remove(folder.filePath(QStringLiteral("bus")));
    };
    QProcess bus;
    QVERIFY(startBus(bus));
    auto player = std::make_unique<MprisStandIn>(QStringLiteral("mpv"), address);
    player->set(MprisStandIn::playing(Mirror::song(one)));
    Mirror mirror(address);
    QTRY_COMPARE(mirror.title(), one);
    for (int round = 0; round < 2; ++round) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("session bus has gone")));
        stopBus(bus);
        QTRY_VERIFY(!mirror.workspace.isRunning(BundleId::music));
        QVERIFY(startBus(bus));
        player = std::make_unique<MprisStandIn>(QStringLiteral("mpv"), address);
        player->set(MprisStandIn::playing(Mirror::song(two)));
        QTRY_COMPARE_WITH_TIMEOUT(mirror.title(), two, 10000);
    }
    stopBus(bus);
}

QTEST_GUILESS_MAIN(MprisTest)
#include "mpris_test.moc"
