#include "audio/PlayerChoice.h"
#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "linux/desktop/DesktopAutomation.h"
#include "linux/desktop/DesktopWorkspace.h"
#include "linux/mpris/MprisApplication.h"
#include "linux/mpris/MprisBus.h"
#include "linux/mpris/MprisPlayer.h"
#include "linux/mpris/PlayerNotifier.h"
#include "linux/mpris/PlayerRoster.h"
#include "linux/script/ScriptError.h"
#include "platform/BundleId.h"
#include "support/MemoryDefaults.h"
#include "support/MprisStandIn.h"

#include <QDBusObjectPath>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString status = QStringLiteral("PlaybackStatus");
const QString paused = QStringLiteral("Paused");
const QString stopped = QStringLiteral("Stopped");

QVariantMap song(const QString& title, const QString& artist = QStringLiteral("Band"), double seconds = 200)
{
    return MprisStandIn::metadata(QStringLiteral("/t/") + QString::number(qHash(title)), title, artist,
                                  QStringLiteral("Album"), seconds);
}

/// Everything between the bus and the portable rooms.
struct Mirror {
    explicit Mirror(const QString& address = {}) : bus(runLoop, address)
    {
        for (const auto& name : {QStringLiteral("com.apple.Music.playerInfo"),
                                 QStringLiteral("com.spotify.client.PlaybackStateChanged")}) {
            center.observe(name, &observer, [this, name](const QVariantMap& info) {
                posted << QStringLiteral("%1: %2 %3 by %4")
                              .arg(name.section(u'.', 1, 1), info[QStringLiteral("Player State")].toString(),
                                   info[QStringLiteral("Name")].toString(),
                                   info[QStringLiteral("Artist")].toString());
                last = info;
            });
        }
    }

    MprisPlayer* music() const { return roster.player(PlayerRole::music); }
    QString title() const { return music() != nullptr ? music()->state().track.title : QString(); }

    EventLoop runLoop;
    MemoryDefaults defaults;
    MprisBus bus;
    PlayerChoice casting{defaults};
    PlayerRoster roster{bus, casting};
    NotificationCenter center;
    PlayerNotifier notifier{roster, center};
    DesktopWorkspace workspace{roster};
    DesktopAutomation automation{roster};
    MprisApplication application{roster, PlayerRole::music};
    QObject observer;
    QStringList posted;
    QVariantMap last;
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
    void obeysCommands();
    void seeksWithoutTrackId();
    void correctsSilentSeeks();
    void rereadsInvalidated();
    void switchesBetweenPlayers();
    void survivesMutePlayer();
    void isRefused();
    void survivesNonsense();
    void survivesBusRestart();
};

void MprisTest::findsRunningPlayers()
{
    MprisStandIn player(QStringLiteral("mpv.instance-7"));
    player.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    player.set({{QStringLiteral("Position"), qlonglong(42000000)}});
    QVERIFY(player.isRegistered());
    Mirror mirror;
    QSignalSpy launched(&mirror.workspace, &Workspace::applicationLaunched);
    QTRY_COMPARE(launched.count(), 1);
    QCOMPARE(launched[0][0].toString(), BundleId::music);
    QCOMPARE(mirror.title(), QStringLiteral("One"));
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
        player.change(MprisStandIn::playing(song(QStringLiteral("One"))));
        QTRY_COMPARE(mirror.posted, QStringList(QStringLiteral("apple: Playing One by Band")));
        QCOMPARE(mirror.last[QStringLiteral("Total Time")].toLongLong(), 200000);
    }
    QTRY_COMPARE(terminated.count(), 1);
    QVERIFY(!mirror.workspace.isRunning(BundleId::music));
    QVERIFY_THROWS_EXCEPTION(ScriptError, mirror.application.property(QStringLiteral("player state")));
}

void MprisTest::tellsWhatSpotifyTells()
{
    MprisStandIn player(QStringLiteral("spotify.instance77"));
    Mirror mirror;
    QTRY_VERIFY(mirror.workspace.isRunning(BundleId::spotify));
    QVERIFY(!mirror.workspace.isRunning(BundleId::music));
    QVariantMap metadata = song(QStringLiteral("Wave"), QStringLiteral("Shore"), 99.5);
    metadata[QStringLiteral("mpris:artUrl")] = QStringLiteral("http://art/1");
    metadata[QStringLiteral("mpris:length")] =
        QVariant::fromValue(qulonglong(99500000)); // as the real client
    player.set({{QStringLiteral("Position"), qlonglong(7250000)}});
    player.change(MprisStandIn::playing(metadata));
    QTRY_COMPARE(mirror.posted, QStringList(QStringLiteral("spotify: Playing Wave by Shore")));
    QCOMPARE(mirror.last[QStringLiteral("Duration")].toLongLong(), 99500);
    QCOMPARE(mirror.last[QStringLiteral("Artwork URL")].toString(), QStringLiteral("http://art/1"));
    QTRY_VERIFY(mirror.roster.player(PlayerRole::spotify)->position() >= 7.25);
}

void MprisTest::letsBurstsComeToRest()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    QVariantMap burst = {
        {QStringLiteral("xesam:title"), QStringLiteral("Two")},
        {QStringLiteral("mpris:trackid"), QVariant::fromValue(QDBusObjectPath(QStringLiteral("/t/2")))}};
    player.change({{QStringLiteral("Metadata"), burst}});
    burst[QStringLiteral("xesam:artist")] = QStringLiteral("Solo");
    player.change({{QStringLiteral("Metadata"), burst}});
    burst[QStringLiteral("mpris:length")] = 12000000;
    player.change({{QStringLiteral("Metadata"), burst}});
    QTRY_COMPARE(mirror.posted, QStringList(QStringLiteral("apple: Playing Two by Solo")));
    QCOMPARE(mirror.last[QStringLiteral("Total Time")].toLongLong(), 12000);
    QCOMPARE(mirror.last[QStringLiteral("Album")].toString(), QString()); // not the last track's
}

void MprisTest::bridgesGapsBetweenTracks()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    player.change({{status, stopped}, {QStringLiteral("Metadata"), QVariantMap()}});
    player.change(MprisStandIn::playing(QVariantMap()));
    player.change({{QStringLiteral("Metadata"), song(QStringLiteral("Two"))}});
    QTRY_COMPARE(mirror.posted, QStringList(QStringLiteral("apple: Playing Two by Band")));
    player.change({{status, stopped}}); // for good
    QTRY_COMPARE(mirror.posted.last(), QStringLiteral("apple: Stopped Two by Band"));
}

void MprisTest::obeysCommands()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    for (const char* command : {"playpause", "next track", "previous track", "pause", "play"}) {
        mirror.application.perform(QString::fromLatin1(command), {}, {});
    }
    mirror.application.setProperty(QStringLiteral("player position"), 42.5);
    QVERIFY(std::abs(mirror.music()->position() - 42.5) < 1);                           // at once
    mirror.application.setProperty(QStringLiteral("player position"), qlonglong(4000)); // past the end
    const QString id = player.property(QStringLiteral("Metadata"))
                           .toMap()[QStringLiteral("mpris:trackid")]
                           .value<QDBusObjectPath>()
                           .path();
    QTRY_COMPARE(player.calls,
                 QStringList({QStringLiteral("PlayPause"), QStringLiteral("Next"), QStringLiteral("Previous"),
                              QStringLiteral("Pause"), QStringLiteral("Play"),
                              QStringLiteral("SetPosition %1 42500000").arg(id),
                              QStringLiteral("SetPosition %1 200000000").arg(id)}));
    mirror.workspace.open(QUrl(QStringLiteral("music://")));
    QTRY_COMPARE(player.calls.last(), QStringLiteral("Raise"));
    QVERIFY_THROWS_EXCEPTION(
        ScriptError, mirror.application.setProperty(QStringLiteral("player position"), QStringLiteral("x")));
}

void MprisTest::seeksWithoutTrackId()
{
    MprisStandIn player(QStringLiteral("mpv"));
    QVariantMap metadata = song(QStringLiteral("One"));
    metadata[QStringLiteral("mpris:trackid")] = QStringLiteral("spotify:track:1");
    player.set({{status, paused},
                {QStringLiteral("Metadata"), metadata},
                {QStringLiteral("Position"), qlonglong(10000000)}});
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    mirror.music()->setPosition(42.5);
    QTRY_COMPARE(player.calls, QStringList(QStringLiteral("Seek 32500000")));
    QCOMPARE(player.property(QStringLiteral("Position")).toLongLong(), 42500000);
}

void MprisTest::correctsSilentSeeks()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.announcesSeeks = false;
    player.set({{status, paused}, {QStringLiteral("Metadata"), song(QStringLiteral("One"))}});
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    QSignalSpy jumped(&mirror.workspace, &Workspace::playbackJumped);
    player.set({{QStringLiteral("Position"), qlonglong(90000000)}}); // nobody is told
    mirror.application.property(QStringLiteral("player position"));  // asks, for the next time
    QTRY_COMPARE(jumped.count(), 1);
    QCOMPARE(mirror.music()->position(), 90.0);
    player.seek(30000000);
    QTRY_COMPARE(jumped.count(), 2);
    QCOMPARE(mirror.music()->position(), 30.0);
    player.seek(30000000); // nothing new
    player.change({{status, QStringLiteral("Playing")}});
    QTRY_VERIFY(mirror.music()->isPlaying());
    QCOMPARE(jumped.count(), 2);
}

void MprisTest::rereadsInvalidated()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    player.set({{QStringLiteral("Metadata"), song(QStringLiteral("Two"))}});
    player.invalidate(QStringLiteral("Metadata"));
    QTRY_COMPARE(mirror.title(), QStringLiteral("Two"));
}

void MprisTest::switchesBetweenPlayers()
{
    MprisStandIn first(QStringLiteral("mpv"));
    first.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    auto second = std::make_unique<MprisStandIn>(QStringLiteral("mpv.instance2"));
    second->set({{status, paused}, {QStringLiteral("Metadata"), song(QStringLiteral("Two"))}});
    Mirror mirror;
    QTRY_COMPARE(mirror.bus.players().size(), 2);
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    second->change({{status, QStringLiteral("Playing")}}); // the latest to start
    QTRY_COMPARE(mirror.posted, QStringList(QStringLiteral("apple: Playing Two by Band")));
    second->change({{status, paused}}); // the other one still plays
    QTRY_COMPARE(mirror.posted.last(), QStringLiteral("apple: Playing One by Band"));
    first.change({{status, paused}});
    QTRY_COMPARE(mirror.posted.last(), QStringLiteral("apple: Paused One by Band"));
    QSignalSpy terminated(&mirror.workspace, &Workspace::applicationTerminated);
    second.reset(); // had no role
    QTRY_COMPARE(mirror.bus.players().size(), 1);
    QCOMPARE(terminated.count(), 0);
}

void MprisTest::survivesMutePlayer()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    player.isMute = true;
    QElapsedTimer timer;
    timer.start();
    mirror.application.property(QStringLiteral("player position"));
    mirror.application.perform(QStringLiteral("playpause"), {}, {});
    QVERIFY2(timer.elapsed() < 1000, "waited for the player");

    // It is taken to stand still until it is heard again.
    const auto moves = [&mirror] {
        const double before = mirror.music()->position();
        QTest::qWait(20);
        return mirror.music()->position() > before;
    };
    QTRY_VERIFY_WITH_TIMEOUT(!moves(), 5000);
    player.isMute = false;
    player.change({{QStringLiteral("Metadata"), song(QStringLiteral("Two"))}});
    QTRY_COMPARE(mirror.title(), QStringLiteral("Two"));
    QTRY_VERIFY(moves());
}

void MprisTest::isRefused()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.isRefusing = true;
    Mirror mirror;
    QTRY_COMPARE(mirror.automation.permission(BundleId::music), std::optional(Automation::refused));
    try {
        mirror.application.elements(QStringLiteral("track"));
        QFAIL("a refused player answered");
    } catch (const ScriptError& error) {
        QCOMPARE(error.number, -1743);
    }
}

void MprisTest::survivesNonsense()
{
    MprisStandIn player(QStringLiteral("mpv"));
    player.set(MprisStandIn::playing(song(QStringLiteral("One"))));
    Mirror mirror;
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("unknown playback status")));
    player.change({{status, QStringLiteral("Dancing")}, {QStringLiteral("Metadata"), 7}});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("unknown playback status")));
    player.change({{status, 12}, {QStringLiteral("Rate"), QStringLiteral("fast")}});
    player.change({{QStringLiteral("Metadata"), QStringList{QStringLiteral("a")}}});
    player.change(MprisStandIn::playing(song(QStringLiteral("Two"))));
    QTRY_COMPARE(mirror.title(), QStringLiteral("Two"));
    QVERIFY(mirror.music()->isPlaying());
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
    player->set(MprisStandIn::playing(song(QStringLiteral("One"))));
    Mirror mirror(address);
    QTRY_COMPARE(mirror.title(), QStringLiteral("One"));
    for (int round = 0; round < 2; ++round) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("session bus has gone")));
        stopBus(bus);
        QTRY_VERIFY(!mirror.workspace.isRunning(BundleId::music));
        QVERIFY(startBus(bus));
        player = std::make_unique<MprisStandIn>(QStringLiteral("mpv"), address);
        player->set(MprisStandIn::playing(song(QStringLiteral("Again"))));
        QTRY_COMPARE_WITH_TIMEOUT(mirror.title(), QStringLiteral("Again"), 10000);
    }
    stopBus(bus);
}

QTEST_GUILESS_MAIN(MprisTest)
#include "mpris_test.moc"
