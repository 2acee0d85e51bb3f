#include "Mirror.h"

#include "engine/PlayerScripts.h"
#include "platform/BundleId.h"

#include <QtTest>

namespace scripts = PlayerScripts;

namespace {

const QString status = u"PlaybackStatus"_s;
const QString metadata = u"Metadata"_s;
const QString position = u"Position"_s;
const QString playing = u"Playing"_s;
const QString paused = u"Paused"_s;
const QString stopped = u"Stopped"_s;
const QString one = u"One"_s;
const QString two = u"Two"_s;

QVariantMap track(int number, const char* title, const char* artist)
{
    return MprisStandIn::metadata(u"/t/%1"_s.arg(number), QString::fromUtf8(title), QString::fromUtf8(artist),
                                  u"Hours"_s, 215.5);
}

/// A player that plays "One" unless the test says otherwise, and a mirror that has seen it.
struct Scene {
    explicit Scene(const QVariantMap& properties = {}, const QString& name = u"mpv"_s) : player(name)
    {
        player.set(MprisStandIn::playing(Mirror::song(one)));
        player.set(properties);
        isSeen = QTest::qWaitFor([this] { return !mirror.roster.all().isEmpty() && isReady(); });
    }

    bool isReady() const { return mirror.roster.all().constFirst().isReachable; }

    /// Seeks and seeks back. What the player said before has arrived by then.
    bool hearsSeek()
    {
        player.seek(50000000);
        const bool isHeard = QTest::qWaitFor([this] { return mirror.music()->position() >= 50; });
        player.seek(0);
        return isHeard && QTest::qWaitFor([this] { return mirror.music()->position() < 50; });
    }

    MprisStandIn player;
    Mirror mirror;
    bool isSeen = false;
};

} // namespace

class MprisTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsRunningPlayers()
    {
        const Scene scene({{position, qlonglong(42000000)}}, u"mpv.instance-7"_s);
        QCOMPARE(scene.mirror.title(), one);
        QVERIFY(scene.mirror.music()->position() >= 42 && scene.mirror.music()->position() < 45);
        QVERIFY(scene.mirror.posted.isEmpty()); // found, not changed
        const DesktopAutomation& automation = scene.mirror.automation;
        QCOMPARE(automation.permission(BundleId::music), std::optional(Automation::granted));
        QCOMPARE(automation.permission(BundleId::spotify), std::optional(Automation::targetNotRunning));
        QCOMPARE(automation.permission(u"org.example.editor"_s), std::nullopt);
    }

    void followsComingAndGoing()
    {
        Mirror mirror;
        QVERIFY(!mirror.workspace.isRunning(BundleId::music));
        QSignalSpy launched(&mirror.workspace, &Workspace::applicationLaunched);
        QSignalSpy terminated(&mirror.workspace, &Workspace::applicationTerminated);
        {
            MprisStandIn player(u"vlc"_s);
            player.addName(u"vlc.instance12"_s); // one player, two names
            QTRY_COMPARE(launched.count(), 1);
            QCOMPARE(mirror.bus.players().size(), 1);
            player.change(MprisStandIn::playing(Mirror::song(one)));
            QTRY_COMPARE(mirror.posted, QStringList(u"apple: Playing One by Band"_s));
            QCOMPARE(mirror.last[u"Total Time"_s].toLongLong(), 200000);
        }
        QTRY_COMPARE(terminated.count(), 1);
        QVERIFY(!mirror.workspace.isRunning(BundleId::music));
        QCOMPARE(mirror.run(scripts::status(Player::appleMusic)), u"STOPPED"_s);
        QCOMPARE(mirror.run(scripts::playPause(Player::appleMusic)), u"error -600"_s);
    }

    void tellsWhatSpotifyTells()
    {
        Scene scene({{metadata, QVariantMap()}}, u"spotify.instance77"_s);
        QVERIFY(scene.isSeen && !scene.mirror.workspace.isRunning(BundleId::music));
        QVariantMap wave = Mirror::song(u"Wave"_s, u"Shore"_s);
        wave[u"mpris:artUrl"_s] = u"http://art/1"_s;
        wave[u"mpris:length"_s] = QVariant::fromValue(qulonglong(99500000)); // as the real client
        scene.player.change(MprisStandIn::playing(wave));
        QTRY_COMPARE(scene.mirror.posted, QStringList(u"spotify: Playing Wave by Shore"_s));
        QVariantMap told = scene.mirror.last;
        QVERIFY(told[u"Duration"_s] == 99500 && told[u"Artwork URL"_s] == u"http://art/1"_s);
        QVERIFY(told.contains(u"Playback Position"_s));
    }

    /// Of a change of tracks in several steps, or by way of nothing at all, only the end is announced.
    void letsChangesComeToRest()
    {
        Scene scene;
        QVERIFY(scene.isSeen);
        QVariantMap burst = {{u"xesam:title"_s, two}, {u"mpris:trackid"_s, u"/t/2"_s}};
        scene.player.change({{metadata, burst}});
        burst.insert({{u"xesam:artist"_s, u"Solo"_s}, {u"mpris:length"_s, 12000000}});
        scene.player.change({{metadata, burst}});
        QTRY_COMPARE(scene.mirror.posted, QStringList(u"apple: Playing Two by Solo"_s));
        QCOMPARE(scene.mirror.last[u"Total Time"_s].toLongLong(), 12000);
        QCOMPARE(scene.mirror.last[u"Album"_s].toString(), QString()); // not the last track's

        scene.player.change({{status, stopped}, {metadata, QVariantMap()}});
        scene.player.change(MprisStandIn::playing(QVariantMap()));
        scene.player.change({{metadata, Mirror::song(one)}});
        QTRY_COMPARE(scene.mirror.posted.size(), 2);
        QCOMPARE(scene.mirror.posted.last(), u"apple: Playing One by Band"_s);
        scene.player.change({{status, stopped}}); // for good
        QTRY_COMPARE(scene.mirror.posted.last(), u"apple: Stopped One by Band"_s);
    }

    /// Music's and Spotify's players have four tracks each.
    void replies()
    {
        // A comma in the numbers of people, never in those of replies.
        const auto restore = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
        QLocale::setDefault(QLocale(QLocale::German));
        QList<QVariantMap> tracks = {track(1, "Élan", "Ada"), track(2, "Noon & Co", "Ada"),
                                     track(3, "Dusk", "Bo"), track(4, "Élan", "Ada")};
        tracks[2][u"mpris:artUrl"_s] = u"http://art/3"_s;
        constexpr Player music = Player::appleMusic;
        using Row = std::tuple<QString, int, QString, QString>;
        for (const auto& [script, current, state, expected] :
             // "~" is a position that moves
             {Row{scripts::status(music), 1, playing, u"Élan|||Ada|||Hours|||215.5|||~|||true|||/t/1"_s},
              {scripts::status(music), 2, paused, u"Noon & Co|||Ada|||Hours|||215.5|||7.25|||false|||/t/2"_s},
              {scripts::status(music), 1, stopped, u"STOPPED"_s},
              {scripts::status(music), 0, playing, u"STOPPED"_s},
              {scripts::status(Player::spotify), 3, paused,
               u"Dusk|||Bo|||Hours|||215500|||7.25|||false|||http://art/3"_s},
              {scripts::upNextListing(8), 2, playing, u"3|||Dusk|||Bo###4|||Élan|||Ada###"_s},
              {scripts::upNextListing(1), 2, playing, u"3|||Dusk|||Bo###"_s},
              {scripts::upNextListing(1), 4, playing, u"2|||Noon & Co|||Ada###"_s}, // behind the first Élan
              {scripts::reaction(), 1, playing, u"false|false"_s},
              {scripts::automationProbe(u"mUsIc"_s), 1, playing, u"0"_s},
              {scripts::automationProbe(u"Tapes"_s), 1, playing, u"error -600"_s}}) {
            MprisStandIn musicPlayer(u"mpv"_s);
            MprisStandIn spotify(u"spotify"_s);
            for (MprisStandIn* const player : {&musicPlayer, &spotify}) {
                player->setTracks(tracks);
                player->set({{status, state}, {position, qlonglong(7250000)}});
                player->set({{metadata, current > 0 ? tracks[current - 1] : QVariantMap()}});
            }
            Mirror mirror;
            QTRY_VERIFY(mirror.roster.player(PlayerRole::spotify) != nullptr);
            QTRY_VERIFY(mirror.roster.player(PlayerRole::spotify)->isReady());
            static const QRegularExpression moving(uR"(\|7\.\d+\|\|\|true)"_s);
            QTRY_COMPARE(mirror.run(script).replace(moving, u"|~|||true"_s), expected);
        }
    }

    void effects()
    {
        constexpr Player music = Player::appleMusic;
        const QString someId = u"spotify:track:1"_s;
        using Row = std::tuple<QString, QString, QString>;
        for (const auto& [script, id, expected] :
             {Row{scripts::playPause(music), {}, u"PlayPause"_s},
              {scripts::nextTrack(music), {}, u"Next"_s},
              {scripts::previousTrack(music), {}, u"Previous"_s},
              {scripts::pauseIfPlaying(music), {}, {}},
              {scripts::seek(music, 42.5), {}, u"SetPosition /t/1 42500000"_s},
              {scripts::seek(music, 4000), {}, u"SetPosition /t/1 215500000"_s}, // past the end
              {scripts::seek(music, -3), {}, u"SetPosition /t/1 0"_s},
              {scripts::seek(music, 42.5), someId, u"Seek 32500000"_s},
              {scripts::playPlaylistTrack(3), {}, u"GoTo /t/3"_s},
              {scripts::playPlaylistTrack(5), {}, {}}, // behind the end
              {scripts::loveMusic(), {}, {}}}) {
            QVariantMap current = track(1, "Dawn", "Ada");
            if (!id.isEmpty()) {
                current[u"mpris:trackid"_s] = id;
            }
            MprisStandIn player(u"mpv"_s);
            player.set({{status, paused}, {position, qlonglong(10000000)}, {metadata, current}});
            player.setTracks({track(1, "Dawn", "Ada"), track(2, "Noon", "Ada"), track(3, "Dusk", "Bo")});
            Mirror mirror;
            QTRY_VERIFY(mirror.music() != nullptr && mirror.music()->trackList().tracks().size() == 3);
            QVERIFY(mirror.music()->isReady());
            mirror.run(script);
            mirror.workspace.open(QUrl(u"music://"_s)); // all before it has arrived by then
            QTRY_VERIFY(player.calls.contains(u"Raise"_s));
            player.calls.removeLast();
            QCOMPARE(player.calls.join(u' '), expected);
            if (script == scripts::seek(music, 42.5)) {
                QCOMPARE(mirror.music()->position(), 42.5);
                QCOMPARE(player.property(position).toLongLong(), 42500000);
            }
        }
    }

    /// It is taken to stand still until it is heard again.
    void survivesMutePlayer()
    {
        Scene scene;
        QVERIFY(scene.isSeen);
        scene.player.failures[u"*"_s] = QString();
        scene.mirror.run(scripts::playPause(Player::appleMusic));
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
    void survivesNonsense()
    {
        Scene scene;
        QVERIFY(scene.isSeen);
        const auto state = scene.mirror.music()->state();
        const QList<std::pair<QVariantMap, QString>> nonsenses = {
            {{{status, u"Dancing"_s}, {u"Rate"_s, u"fast"_s}}, u"unknown playback status"_s},
            {{{status, 12}}, u"unknown playback status"_s},
            {{{metadata, 7}, {position, u"here"_s}}, u"metadata"_s},
            {{{metadata, QStringList{u"a"_s}}}, u"metadata"_s}};
        for (const auto& [nonsense, warning] : nonsenses) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
            scene.player.announce(u"org.mpris.MediaPlayer2.Player"_s, nonsense);
            QVERIFY(scene.hearsSeek());
            QVERIFY(scene.mirror.music()->state() == state);
        }
        QVERIFY(scene.mirror.posted.isEmpty());
        scene.player.change({{metadata, Mirror::song(two)}});
        QTRY_COMPARE(scene.mirror.posted, QStringList(u"apple: Playing Two by Band"_s));
    }

    void keepsGoodTracks()
    {
        Scene scene;
        const auto titles = [&scene] {
            QStringList all;
            for (const MprisTrack& each : scene.mirror.music()->trackList().tracks()) {
                all << each.title;
            }
            return all.join(u' ');
        };
        scene.player.setTracks({track(1, "Dawn", "Ada"), track(2, "Noon", "Ada")});
        QTRY_COMPARE(titles(), u"Dawn Noon"_s);
        scene.player.failures[u"GetTracksMetadata"_s] = u"org.freedesktop.DBus.Error.NoReply"_s;
        const QVariant unknown = QVariant::fromValue(QList{QDBusObjectPath(u"/t/8"_s)});
        for (const QVariant& tracks : {QVariant(QStringList{u"/t/1"_s}), QVariant(7), unknown}) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"track list"_s));
            scene.player.set({{u"Tracks"_s, tracks}});
            scene.player.asked.clear();
            scene.player.announceTracks();
            QTRY_VERIFY(scene.player.asked.contains(u"Tracks"_s));
            QTRY_VERIFY(tracks != unknown || scene.player.failed > 0);
            QVERIFY(scene.hearsSeek());
            QCOMPARE(titles(), u"Dawn Noon"_s);
        }
        scene.player.failures.clear();
        scene.player.setTracks({track(3, "Dusk", "Bo")});
        QTRY_COMPARE(titles(), u"Dusk"_s);
    }

    void survivesBusRestart()
    {
        QTemporaryDir folder;
        const QString address = u"unix:path="_s + folder.filePath(u"bus"_s);
        const QString options = u"--session --nofork --nopidfile --print-address --address="_s;
        const auto startBus = [&](QProcess& daemon) {
            daemon.start(u"dbus-daemon"_s, QProcess::splitCommand(QString(options + address)));
            return daemon.waitForReadyRead(10000);
        };
        std::optional<Mirror> mirror;
        for (const QString& title : {one, two, one}) {
            QProcess bus;
            QVERIFY(startBus(bus));
            MprisStandIn player(u"mpv"_s, address);
            player.set(MprisStandIn::playing(Mirror::song(title)));
            if (!mirror) {
                mirror.emplace(address);
            }
            QTRY_COMPARE_WITH_TIMEOUT(mirror->title(), title, 10000);
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"session bus has gone"_s));
            bus.kill();
            bus.waitForFinished();
            QFile::remove(folder.filePath(u"bus"_s));
            QTRY_VERIFY(!mirror->workspace.isRunning(BundleId::music));
        }
    }
};

QTEST_GUILESS_MAIN(MprisTest)
#include "mpris_test.moc"
