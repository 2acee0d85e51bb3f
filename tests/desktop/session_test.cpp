#include "audio/AudioBridge.h"
#include "audio/AudioCapture.h"
#include "audio/AudioSourceManager.h"
#include "audio/PlayerChoice.h"
#include "engine/NowPlayingService.h"
#include "engine/PlayerScripts.h"
#include "linux/LinuxPlatform.h"
#include "platform/BundleId.h"
#include "platform/ScriptRunner.h"
#include "platform/Workspace.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"
#include "support/Command.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"
#include "support/MprisStandIn.h"
#include "support/RealPlayer.h"

#include <QFile>
#include <QTest>

#include <csignal>

namespace {

/// Sound that a test makes.
class HeardSound final : public AudioCapture
{
public:
    void start() override {}
    void stop() override {}
    void frame(float level)
    {
        Q_EMIT liveChanged(true);
        Q_EMIT bandsPublished({level, 0, 0, 0});
    }
};

/// The engine on the real services of this desktop.
struct Session {
    Session()
    {
        defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                           QStringLiteral("http://127.0.0.1:1"));
        sources.setEnabledSources(AudioSource::appleMusic | AudioSource::spotify | AudioSource::systemAudio);
        service = std::make_unique<NowPlayingService>(
            NowPlayingService::Dependencies{.platform = linux.ports(),
                                            .defaults = defaults,
                                            .sources = sources,
                                            .audio = bridge,
                                            .power = power,
                                            .theme = theme,
                                            .recentlyPlayed = recentlyPlayed},
            EngineNeighbours{.sendMediaKey = [this](MediaKeys::Key) { ++keys; }});
    }

    QString active() const { return playerName(service->activePlayer()); }
    std::optional<QString> run(const QString& script) { return linux.ports().scripts.run(script).reply; }

    LogFile log;
    MemoryDefaults defaults;
    PlayerChoice casting{defaults};
    LinuxPlatform linux{casting};
    HeardSound* sound = new HeardSound;
    AudioBridge bridge{linux.ports().runLoop, defaults, std::unique_ptr<AudioCapture>(sound)};
    AudioSourceManager sources{defaults, linux.ports().notifications, bridge};
    PowerModeManager power{defaults, linux.ports().power};
    ThemeManager theme{defaults};
    RecentlyPlayedManager recentlyPlayed{defaults, linux.ports().runLoop};
    std::unique_ptr<NowPlayingService> service;
    int keys = 0;
};

const QString playing = QStringLiteral("Playing");
const QString paused = QStringLiteral("Paused");

} // namespace

/// The engine between a real player as Music and a stand-in under the name of the real Spotify client.
class SessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void followsRealPlayer();
    void showsPlayersCover();
    void commandsReachRealPlayer();
    void commandsReachSpotify();
    void arbitrates_data();
    void arbitrates();
    void silencesHijacker();
    void runsEveryScript();
    void listsWhatIsNext();
    void survivesStoppedPlayer();
    void clearsWhenPlayerIsKilled();

private:
    void setSpotify(const QString& status);

    RealPlayer _mpv;
    std::unique_ptr<MprisStandIn> _spotify;
    std::unique_ptr<Session> _session;
};

void SessionTest::initTestCase()
{
    QVERIFY2(_mpv.start(), "mpv did not come");
}

void SessionTest::init()
{
    if (!_mpv.isRunning()) {
        QVERIFY(_mpv.start());
    }
    RealPlayer::tell(QStringLiteral("play"));
    _session = std::make_unique<Session>();
    QTRY_COMPARE(_session->service->title(), RealPlayer::metadata(QStringLiteral("title")));
}

void SessionTest::cleanup()
{
    if (QTest::currentTestFailed()) {
        qInfo().noquote() << _session->log.take().join(u'\n');
    }
    _session.reset();
    _spotify.reset();
}

void SessionTest::setSpotify(const QString& status)
{
    if (status == QStringLiteral("off")) {
        _spotify.reset();
        return;
    }
    if (!_spotify) {
        _spotify = std::make_unique<MprisStandIn>(QStringLiteral("spotify"));
    }
    _spotify->change({{QStringLiteral("PlaybackStatus"), status},
                      {QStringLiteral("Metadata"),
                       MprisStandIn::metadata(QStringLiteral("/com/spotify/track/1"), QStringLiteral("Tide"),
                                              QStringLiteral("Shore"), QStringLiteral("Sea"), 215)}});
    QTRY_VERIFY(_session->linux.ports().workspace.isRunning(BundleId::spotify));
}

void SessionTest::followsRealPlayer()
{
    const NowPlayingService& service = *_session->service;
    for (int track = 0; track < 3; ++track) {
        RealPlayer::tell(QStringLiteral("next"));
        QTRY_COMPARE(service.title(), RealPlayer::metadata(QStringLiteral("title")));
        QCOMPARE(service.artist(), RealPlayer::metadata(QStringLiteral("artist")));
        QCOMPARE(service.album(), RealPlayer::metadata(QStringLiteral("album")));
        QCOMPARE(service.duration(), RealPlayer::metadata(QStringLiteral("mpris:length")).toDouble() / 1e6);
        QVERIFY(std::abs(service.elapsed() - RealPlayer::position()) < 1.5);
    }
    // The user seeks and pauses in the player itself.
    output(QStringLiteral("playerctl"),
           {QStringLiteral("--player=mpv"), QStringLiteral("position"), QStringLiteral("20")});
    QTRY_VERIFY_WITH_TIMEOUT(std::abs(service.elapsed() - RealPlayer::position()) < 1.5, 2000);
    RealPlayer::tell(QStringLiteral("pause"));
    QTRY_VERIFY_WITH_TIMEOUT(!service.isPlaying(), 1000);
}

/// The player finds a picture that lies beside the music.
void SessionTest::showsPlayersCover()
{
    const QUrl track(RealPlayer::metadata(QStringLiteral("xesam:url")));
    const QString cover = track.resolved(QUrl(QStringLiteral("cover.png"))).toLocalFile();
    const auto removal = qScopeGuard([&cover] { QFile::remove(cover); });
    QImage picture(900, 450, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    QVERIFY(picture.save(cover));
    RealPlayer::tell(QStringLiteral("next"));
    QTRY_COMPARE(_session->service->artwork().size(), QSize(600, 300));
    QCOMPARE(_session->service->artwork().pixelColor(300, 150), QColor(Qt::darkCyan));
}

void SessionTest::commandsReachRealPlayer()
{
    NowPlayingService& service = *_session->service;
    service.togglePlayPause();
    QTRY_COMPARE(RealPlayer::status(), paused);
    QTRY_VERIFY(!service.isPlaying());
    service.togglePlayPause();
    QTRY_COMPARE(RealPlayer::status(), playing);
    QTRY_VERIFY(service.isPlaying());
    const QString before = RealPlayer::metadata(QStringLiteral("title"));
    service.nextTrack();
    QTRY_VERIFY(RealPlayer::metadata(QStringLiteral("title")) != before);
    QTRY_COMPARE(service.title(), RealPlayer::metadata(QStringLiteral("title")));
    service.previousTrack();
    QTRY_COMPARE(service.title(), before);
    QCOMPARE(RealPlayer::metadata(QStringLiteral("title")), before);
    _session->log.take();
    service.seekTo(12.5);
    QTRY_VERIFY(std::abs(RealPlayer::position() - 12.5) < 1.5);
    QStringList lines;
    QTRY_VERIFY((lines += _session->log.take(), !lines.isEmpty())); // the refresh that follows a seek
    QVERIFY(std::abs(service.elapsed() - RealPlayer::position()) < 1.5);
    service.setSleepTimer(0); // the very next tick
    QTRY_COMPARE(RealPlayer::status(), paused);
}

void SessionTest::commandsReachSpotify()
{
    RealPlayer::tell(QStringLiteral("pause"));
    QTRY_VERIFY(!_session->service->isPlaying());
    setSpotify(playing);
    QTRY_COMPARE(_session->active(), QStringLiteral("spotify"));
    NowPlayingService& service = *_session->service;
    QCOMPARE(service.duration(), 215.0);
    service.togglePlayPause();
    service.nextTrack();
    service.previousTrack();
    service.seekTo(42.5);
    QTRY_COMPARE(_spotify->calls,
                 QStringList({QStringLiteral("PlayPause"), QStringLiteral("Next"), QStringLiteral("Previous"),
                              QStringLiteral("SetPosition /com/spotify/track/1 42500000")}));
    QTRY_VERIFY(!service.isPlaying());
    QVERIFY(std::abs(service.elapsed() - 42.5) < 1);
    QCOMPARE(_spotify->property(QStringLiteral("Position")).toLongLong(), 42500000);
}

void SessionTest::arbitrates_data()
{
    QTest::addColumn<QString>("music");
    QTest::addColumn<QString>("spotify");
    QTest::addColumn<bool>("isSounding");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("isPlaying");
    const auto row = [](const QString& music, const QString& spotify, bool isSounding, const char* expected,
                        bool isPlaying) {
        QTest::addRow("%s, %s, %s", qPrintable(music), qPrintable(spotify), isSounding ? "sound" : "silence")
            << music << spotify << isSounding << QString::fromLatin1(expected) << isPlaying;
    };
    const QString off = QStringLiteral("off");
    row(playing, off, false, "appleMusic", true);
    row(playing, paused, false, "appleMusic", true);
    row(playing, playing, false, "appleMusic", true); // it was first
    row(paused, playing, false, "spotify", true);
    row(paused, paused, false, "appleMusic", false);
    row(paused, off, false, "appleMusic", false);
    row(playing, paused, true, "appleMusic", true);
    row(paused, playing, true, "spotify", true);
    row(paused, paused, true, "systemAudio", true);
    row(paused, off, true, "systemAudio", true);
}

void SessionTest::arbitrates()
{
    QFETCH(QString, music);
    QFETCH(QString, spotify);
    QFETCH(bool, isSounding);
    QFETCH(QString, expected);
    RealPlayer::tell(music == playing ? QStringLiteral("play") : QStringLiteral("pause"));
    QTRY_COMPARE(_session->service->isPlaying(), music == playing);
    setSpotify(spotify);
    if (isSounding) {
        // The first second and a half after a pause is taken for the player's own tail.
        QTRY_VERIFY_WITH_TIMEOUT((_session->sound->frame(0.5F), _session->active() == expected), 4000);
    }
    QTRY_COMPARE(_session->active(), expected);
    _session->service->refresh();
    QCOMPARE(_session->active(), expected);
    for (int frame = 0; isSounding && frame < 6; ++frame) {
        _session->sound->frame(0.5F);
    }
    QTEST(_session->service->isPlaying(), "isPlaying");
}

void SessionTest::silencesHijacker()
{
    RealPlayer::tell(QStringLiteral("pause"));
    QTRY_VERIFY(!_session->service->isPlaying());
    QTRY_VERIFY_WITH_TIMEOUT(
        (_session->sound->frame(0.5F), _session->active() == QStringLiteral("systemAudio")), 4000);
    _session->service->nextTrack();
    QCOMPARE(_session->keys, 1);
    RealPlayer::tell(QStringLiteral("play")); // mpv takes the key for itself
    QCOMPARE(RealPlayer::status(), playing);
    QTRY_COMPARE_WITH_TIMEOUT(RealPlayer::status(), paused, 2000);
    QCOMPARE(_session->active(), QStringLiteral("systemAudio"));
}

void SessionTest::runsEveryScript()
{
    const QString reply = _session->run(PlayerScripts::status(Player::appleMusic)).value_or(QString());
    const QStringList fields = reply.split(QStringLiteral("|||"));
    QCOMPARE(fields.size(), 7);
    QCOMPARE(fields[0], RealPlayer::metadata(QStringLiteral("title")));
    QCOMPARE(fields[1], RealPlayer::metadata(QStringLiteral("artist")));
    QCOMPARE(fields[3].toDouble(), RealPlayer::metadata(QStringLiteral("mpris:length")).toDouble() / 1e6);
    QVERIFY(std::abs(fields[4].toDouble() - RealPlayer::position()) < 1);
    QCOMPARE(fields[5], QStringLiteral("true"));

    QCOMPARE(_session->run(PlayerScripts::reaction()), QStringLiteral("false|false"));
    QCOMPARE(_session->run(PlayerScripts::upNextListing(8)), QString()); // mpv has no track list
    QCOMPARE(_session->run(PlayerScripts::automationProbe(QStringLiteral("Music"))), QStringLiteral("0"));
    for (const QString& script : {PlayerScripts::loveMusic(), PlayerScripts::dislikeMusic(),
                                  PlayerScripts::playPlaylistTrack(1), PlayerScripts::loveSpotify()}) {
        QVERIFY2(!_session->linux.ports().scripts.run(script).errorNumber, qPrintable(script));
    }
    QCOMPARE(RealPlayer::status(), playing); // none of them has disturbed it
    QCOMPARE(_session->run(PlayerScripts::status(Player::spotify)),
             QStringLiteral("STOPPED")); // does not run

    _session->run(PlayerScripts::pauseIfPlaying(Player::appleMusic));
    QTRY_COMPARE(RealPlayer::status(), paused);
    QTRY_VERIFY(!_session->service->isPlaying());
    _session->run(PlayerScripts::pauseIfPlaying(Player::appleMusic)); // leaves it alone
    _session->run(PlayerScripts::playPause(Player::appleMusic));
    QTRY_COMPARE(RealPlayer::status(), playing);
    _session->run(PlayerScripts::seek(Player::appleMusic, 15));
    QTRY_VERIFY(std::abs(RealPlayer::position() - 15) < 1.5);
}

void SessionTest::listsWhatIsNext()
{
    const auto track = [](int number) {
        return MprisStandIn::metadata(QStringLiteral("/t/%1").arg(number),
                                      QStringLiteral("Title %1").arg(number), QStringLiteral("Band"),
                                      QString(), 100);
    };
    const auto next = [](std::initializer_list<int> numbers) {
        QList<UpNextTrack> tracks;
        for (const int number : numbers) {
            tracks.append({QStringLiteral("Title %1").arg(number), QStringLiteral("Band"), number});
        }
        return tracks;
    };
    QCOMPARE(_session->service->upNextTracks(), next({})); // mpv tells no track list
    RealPlayer::tell(QStringLiteral("pause"));
    MprisStandIn player(QStringLiteral("lister"));
    player.setTracks({track(1), track(2), track(3), track(4)});
    player.change(MprisStandIn::playing(track(2)));
    QTRY_COMPARE(_session->service->title(), QStringLiteral("Title 2"));
    QTRY_COMPARE(_session->service->upNextTracks(), next({3, 4}));
    QCOMPARE(_session->service->upNextTracks(1), next({3}));
    player.calls.clear();
    _session->service->playUpNextTrack(4);
    QTRY_COMPARE(player.calls, QStringList{QStringLiteral("GoTo /t/4")});
    player.setTracks({track(1), track(2)});
    QTRY_COMPARE(_session->service->upNextTracks(), next({}));
    player.setTracks({track(2), track(9)});
    QTRY_COMPARE(_session->service->upNextTracks().size(), 1);
}

void SessionTest::survivesStoppedPlayer()
{
    _mpv.send(SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i) {
        _session->service->refresh();
    }
    _session->service->seekTo(5);
    QVERIFY2(timer.elapsed() < 1000, "waited for the player");
    QCOMPARE(_session->active(), QStringLiteral("appleMusic"));
    _mpv.send(SIGCONT);
    RealPlayer::tell(QStringLiteral("next"));
    QTRY_COMPARE(_session->service->title(), RealPlayer::metadata(QStringLiteral("title")));
}

void SessionTest::clearsWhenPlayerIsKilled()
{
    _mpv.kill();
    QTRY_COMPARE_WITH_TIMEOUT(_session->service->title(), QStringLiteral("Not Playing"), 1000);
    QCOMPARE(_session->active(), QStringLiteral("none"));
    QVERIFY(!_session->service->isPlaying());
}

QTEST_MAIN(SessionTest)
#include "session_test.moc"
