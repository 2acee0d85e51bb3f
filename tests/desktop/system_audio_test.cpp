#include "WebPage.h"

#include "app/AudioCaptureSupervision.h"
#include "audio/AudioBridge.h"
#include "audio/AudioCaptureService.h"
#include "audio/AudioDeviceManager.h"
#include "audio/AudioSourceManager.h"
#include "audio/MediaKeys.h"
#include "audio/PlayerChoice.h"
#include "engine/NowPlayingService.h"
#include "linux/LinuxPlatform.h"
#include "linux/x11/X11MediaKey.h"
#include "linux/x11/X11Session.h"
#include "platform/MediaPlayers.h"
#include "platform/Workspace.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"
#include "support/Command.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"
#include "support/RealPlayer.h"

#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

/// Another program that has grabbed the media keys.
class Grabber
{
public:
    Grabber() : _server(xcb_connect(nullptr, nullptr))
    {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(_server)).data->root;
        for (const auto symbol : {X11MediaKey::Symbol::play, X11MediaKey::Symbol::next}) {
            xcb_grab_key(_server, 0, root, 0, X11MediaKey::find(symbol).value_or(0), XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC);
        }
        synchronise();
    }
    ~Grabber() { xcb_disconnect(_server); }
    Grabber(const Grabber&) = delete;
    Grabber& operator=(const Grabber&) = delete;

    /// How many keys went down, and how many came up, so far.
    std::pair<int, int> keys()
    {
        while (xcb_generic_event_t* const event = xcb_poll_for_event(_server)) {
            const int type = event->response_type & 0x7F;
            _down += type == XCB_KEY_PRESS ? 1 : 0;
            _up += type == XCB_KEY_RELEASE ? 1 : 0;
            std::free(event);
        }
        return {_down, _up};
    }

private:
    void synchronise()
    {
        std::free(xcb_get_input_focus_reply(_server, xcb_get_input_focus(_server), nullptr));
    }

    xcb_connection_t* _server;
    int _down = 0;
    int _up = 0;
};

/// A program that is no known player and plays a file.
class Sound
{
public:
    explicit Sound(const QString& file) { _process.start(QStringLiteral("pw-play"), {file}); }
    ~Sound()
    {
        _process.kill();
        _process.waitForFinished();
    }

private:
    QProcess _process;
};

/// The engine, hearing and controlling this desktop.
struct Listener {
    Listener()
    {
        defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                           QStringLiteral("http://127.0.0.1:1"));
        sources.setEnabledSources(AudioSource::appleMusic | AudioSource::spotify | AudioSource::systemAudio);
        power.updateSettings(PowerMode::normal,
                             [](PowerModeSettings& mode) { mode.driftRefreshSeconds = 1; });
        supervision.startAudioCapture();
    }

    bool isShowingSystemAudio(bool isPlaying) const
    {
        return service.activePlayer() == Player::systemAudio && service.isPlaying() == isPlaying;
    }

    LogFile log;
    MemoryDefaults defaults;
    PlayerChoice casting{defaults};
    LinuxPlatform linux{casting};
    Platform& ports = linux.ports();
    AudioBridge bridge{ports.runLoop, defaults,
                       std::make_unique<AudioCaptureService>(ports.audioHardware, ports.runLoop)};
    AudioSourceManager sources{defaults, ports.notifications, bridge};
    PowerModeManager power{defaults, ports.power};
    ThemeManager theme{defaults};
    RecentlyPlayedManager recentlyPlayed{defaults, ports.runLoop};
    MediaKeys mediaKeys{ports};
    NowPlayingService service{{.platform = ports,
                               .defaults = defaults,
                               .sources = sources,
                               .audio = bridge,
                               .power = power,
                               .theme = theme,
                               .recentlyPlayed = recentlyPlayed},
                              {.sendMediaKey = [this](MediaKeys::Key key) { mediaKeys.send(key); }}};
    PillVisibilityManager visibility{defaults};
    AudioDeviceManager devices{ports.audioHardware};
    AudioCaptureSupervision supervision{{.platform = ports,
                                         .service = service,
                                         .sources = sources,
                                         .devices = devices,
                                         .power = power,
                                         .visibility = visibility,
                                         .bridge = bridge}};
};

} // namespace

/// Real sound of no known player: followed, and controlled at its source.
class SystemAudioTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void wakesAfterLongSilence();
    void playerTakesDisplayBack();
    void followsWebPage();
    void commandsDeafPage();

private:
    void typesIntoBrowserInFront();
    void commandsBrowserBehind();
    void leavesTheKeyToItsGrabber();
    bool page(const QString& state) const
    {
        return QTest::qWaitFor([&] { return _page.state() == state; });
    }

    WebPage _page;
    std::unique_ptr<Listener> _listener;
};

void SystemAudioTest::init()
{
    _listener = std::make_unique<Listener>();
}

void SystemAudioTest::cleanup()
{
    if (QTest::currentTestFailed()) {
        qInfo().noquote() << _page.state() << u'\n' << _listener->log.take().join(u'\n');
    }
    _listener.reset();
}

/// Until the sinks sleep and nothing is analysed any more.
void SystemAudioTest::wakesAfterLongSilence()
{
    QCOMPARE(_listener->service.activePlayer(), Player::none);
    {
        const Sound sound(_page.soundFile());
        QTRY_VERIFY(_listener->isShowingSystemAudio(true));
    }
    QTRY_VERIFY(_listener->isShowingSystemAudio(false));
    QSignalSpy playing(&_listener->service, &NowPlayingService::isPlayingChanged);
    QTRY_COMPARE_WITH_TIMEOUT(_listener->service.activePlayer(), Player::none, 15'000);
    QVERIFY(playing.isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!run(QStringLiteral("pactl list short sinks"))
                                  .contains(QRegularExpression(QStringLiteral("RUNNING|IDLE"))),
                             15'000);
    QSignalSpy frames(&_listener->bridge, &AudioBridge::bandsPublished);
    QTRY_VERIFY((frames.clear(), !frames.wait(500)));
    const Sound sound(_page.soundFile());
    QTRY_VERIFY(_listener->isShowingSystemAudio(true));
}

void SystemAudioTest::playerTakesDisplayBack()
{
    const Sound sound(_page.soundFile());
    QTRY_VERIFY(_listener->isShowingSystemAudio(true));
    RealPlayer mpv;
    QVERIFY(mpv.start());
    QTRY_COMPARE(_listener->service.activePlayer(), Player::appleMusic);
    QTRY_COMPARE(_listener->service.title(), RealPlayer::metadata(QStringLiteral("title")));
    RealPlayer::tell(QStringLiteral("pause"));
    QTRY_VERIFY_WITH_TIMEOUT(_listener->isShowingSystemAudio(true), 10'000);
}

/// By keystrokes, by commands and by keys that another program grabs.
void SystemAudioTest::followsWebPage()
{
    WebPage browser;
    QVERIFY(browser.start());
    QTRY_VERIFY(_listener->isShowingSystemAudio(true));
    QTRY_VERIFY(_listener->bridge.bands()[1] > 0.8F && _listener->bridge.bands()[3] < 0.05F);
    typesIntoBrowserInFront();

    QProcess other;
    other.start(QStringLiteral("xmessage"), {QStringLiteral("In front")});
    QTRY_VERIFY(_listener->ports.workspace.frontmostApplication().value_or(RunningApplication()).bundleId ==
                std::nullopt);
    commandsBrowserBehind();
    leavesTheKeyToItsGrabber();
    other.kill();
    other.waitForFinished();
}

void SystemAudioTest::commandsDeafPage()
{
    WebPage browser;
    QVERIFY(browser.start(QStringLiteral("#deaf")));
    QTRY_VERIFY(_listener->isShowingSystemAudio(true));
    _listener->service.togglePlayPause();
    QVERIFY(page(QStringLiteral("paused 2 toggles 0 next 0 previous")));
    QTRY_VERIFY(!_listener->ports.mediaPlayers.all().constFirst().isPlaying);
    _listener->service.togglePlayPause();
    QVERIFY(page(QStringLiteral("playing 3 toggles 0 next 0 previous")));
}

void SystemAudioTest::typesIntoBrowserInFront()
{
    _listener->service.togglePlayPause();
    QVERIFY(page(QStringLiteral("paused 2 toggles 0 next 0 previous")));
    _listener->service.togglePlayPause();
    QVERIFY(page(QStringLiteral("playing 3 toggles 0 next 0 previous")));
    _listener->service.nextTrack();
    QVERIFY(page(QStringLiteral("playing 3 toggles 1 next 0 previous")));
    _listener->service.previousTrack();
    QVERIFY(page(QStringLiteral("playing 3 toggles 1 next 1 previous")));
    const QStringList typed =
        _listener->log.take().filter(QRegularExpression(QStringLiteral(" → keystroke pid [0-9]+$")));
    QCOMPARE(typed.size(), 4);
}

void SystemAudioTest::commandsBrowserBehind()
{
    _listener->service.togglePlayPause();
    QVERIFY(page(QStringLiteral("paused 4 toggles 1 next 1 previous")));
    _listener->service.togglePlayPause();
    QVERIFY(page(QStringLiteral("playing 5 toggles 1 next 1 previous")));
    _listener->service.nextTrack();
    QVERIFY(page(QStringLiteral("playing 5 toggles 2 next 1 previous")));
    QCOMPARE(_listener->log.take().filter(QStringLiteral(" → broadcast (front=?)")).size(), 3);
}

void SystemAudioTest::leavesTheKeyToItsGrabber()
{
    Grabber grabber;
    _listener->service.togglePlayPause();
    QTRY_COMPARE(grabber.keys(), std::pair(1, 1));
    run(QStringLiteral("xdotool keydown Shift_L"));
    _listener->service.nextTrack();
    QTRY_COMPARE(grabber.keys(), std::pair(2, 2));
    run(QStringLiteral("xdotool keyup Shift_L"));
    QVERIFY(page(QStringLiteral("playing 5 toggles 2 next 1 previous")));
}

QTEST_MAIN(SystemAudioTest)
#include "system_audio_test.moc"
