#include "WebPage.h"

#include "app/AudioCaptureSupervision.h"
#include "audio/AudioCaptureService.h"
#include "audio/AudioDeviceManager.h"
#include "audio/MediaKeys.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "linux/x11/X11MediaKey.h"
#include "linux/x11/X11Session.h"
#include "platform/MediaPlayers.h"
#include "platform/Workspace.h"
#include "prefs/PillVisibilityManager.h"
#include "support/EngineParts.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"
#include "support/Program.h"
#include "support/RealPlayer.h"

#include <QtTest>

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
        std::free(xcb_get_input_focus_reply(_server, xcb_get_input_focus(_server), nullptr));
    }
    ~Grabber() { xcb_disconnect(_server); }
    Q_DISABLE_COPY(Grabber)

    /// Which keys went down and came up so far: "down up".
    QString keys()
    {
        while (xcb_generic_event_t* const event = xcb_poll_for_event(_server)) {
            const int type = event->response_type & 0x7F;
            _keys << (type == XCB_KEY_PRESS ? u"down"_s : type == XCB_KEY_RELEASE ? u"up"_s : QString());
            std::free(event);
        }
        return _keys.join(u' ').simplified();
    }

private:
    xcb_connection_t* _server;
    QStringList _keys;
};

/// The engine, hearing and controlling this desktop.
struct Session {
    Session()
    {
        parts.start(ports, defaults,
                    std::make_unique<AudioCaptureService>(ports.audioHardware, ports.runLoop),
                    {.sendMediaKey = [this](MediaKeys::Key key) { mediaKeys.send(key); }});
        parts.manager->setEnabledSources(AudioSources::fromInt(7));
        parts.power->updateSettings(PowerMode::normal, [](auto& mode) { mode.driftRefreshSeconds = 1; });
        supervision = std::make_unique<AudioCaptureSupervision>(
            AudioCaptureSupervision::Dependencies{.platform = ports,
                                                  .service = *parts.service,
                                                  .sources = *parts.manager,
                                                  .devices = devices,
                                                  .power = *parts.power,
                                                  .visibility = visibility,
                                                  .bridge = *parts.bridge});
        supervision->startAudioCapture();
    }

    bool isShowingSystemAudio(bool isPlaying) const
    {
        const NowPlayingService& service = *parts.service;
        return service.activePlayer() == Player::systemAudio && service.isPlaying() == isPlaying;
    }

    LogFile log;
    MemoryDefaults defaults;
    PlayerChoice casting{defaults};
    LinuxPlatform linux{casting};
    Platform& ports = linux.ports();
    MediaKeys mediaKeys{ports};
    EngineParts parts;
    PillVisibilityManager visibility{defaults};
    AudioDeviceManager devices{ports.audioHardware};
    std::unique_ptr<AudioCaptureSupervision> supervision;
};

} // namespace

/// The engine among real players and sounds: what it follows, and what its commands reach.
class SessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _session = std::make_unique<Session>();
        _service = _session->parts.service.get();
    }

    void cleanup()
    {
        if (QTest::currentTestFailed()) {
            qInfo().noquote() << _page.state() << u'\n' << _session->log.take().join(u'\n');
        }
        _session.reset();
        _mpv.kill();
    }

    void followsPlayer()
    {
        QVERIFY(_mpv.start());
        QTRY_VERIFY(RealPlayer::metadata(u"xesam:url"_s).contains(u'/')); // it plays before it says what
        const QUrl track(RealPlayer::metadata(u"xesam:url"_s));
        QImage picture(900, 450, QImage::Format_RGB32); // the player finds one that lies beside the music
        picture.fill(Qt::darkCyan);
        QVERIFY(picture.save(track.resolved(QUrl(u"cover.png"_s)).toLocalFile()));
        RealPlayer::tell(u"next"_s);
        QTRY_COMPARE(_service->title(), RealPlayer::metadata(u"title"_s));
        QCOMPARE(_service->artist(), RealPlayer::metadata(u"artist"_s));
        QCOMPARE(_service->album(), RealPlayer::metadata(u"album"_s));
        QCOMPARE(_service->duration(), RealPlayer::metadata(u"mpris:length"_s).toDouble() / 1e6);
        QTRY_COMPARE(_service->artwork().size(), QSize(600, 300));
        QCOMPARE(_service->artwork().pixelColor(300, 150), QColor(Qt::darkCyan));

        // The user seeks and pauses in the player itself.
        run(u"playerctl --player=mpv position 20"_s);
        QTRY_VERIFY(_service->elapsed() > 19 && std::abs(_service->elapsed() - RealPlayer::position()) < 1.5);
        RealPlayer::tell(u"pause"_s);
        QTRY_VERIFY(RealPlayer::status() == u"Paused" && !_service->isPlaying());
    }

    /// Until the sinks sleep and nothing is analysed any more.
    void wakesAfterLongSilence()
    {
        QCOMPARE(_service->activePlayer(), Player::none);
        {
            const Program sound(u"pw-play"_s, {_page.soundFile()});
            QTRY_VERIFY(_session->isShowingSystemAudio(true));
        }
        QTRY_VERIFY(_session->isShowingSystemAudio(false));
        QSignalSpy playing(_service, &NowPlayingService::isPlayingChanged);
        QTRY_COMPARE_WITH_TIMEOUT(_service->activePlayer(), Player::none, 15'000);
        QVERIFY(playing.isEmpty());
        const QRegularExpression awake(u"RUNNING|IDLE"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!run(u"pactl list short sinks"_s).contains(awake), 15'000);
        QSignalSpy frames(_session->parts.bridge.get(), &AudioBridge::bandsPublished);
        QTRY_VERIFY((frames.clear(), !frames.wait(500)));
        const Program sound(u"pw-play"_s, {_page.soundFile()});
        QTRY_VERIFY(_session->isShowingSystemAudio(true));
    }

    void commandsDeafPage()
    {
        WebPage browser;
        QVERIFY(browser.start(u"#deaf"_s));
        QTRY_VERIFY(_session->isShowingSystemAudio(true));
        _service->togglePlayPause();
        QTRY_COMPARE(_page.state(), u"paused 2 toggles 0 next 0 previous"_s);
        QTRY_VERIFY(!_session->ports.mediaPlayers.all().constFirst().isPlaying);
        _service->togglePlayPause();
        QTRY_COMPARE(_page.state(), u"playing 3 toggles 0 next 0 previous"_s);
    }

    /// By keystrokes, by commands and by keys that another program grabs.
    void followsWebPage()
    {
        WebPage browser;
        QVERIFY(browser.start());
        QTRY_VERIFY(_session->isShowingSystemAudio(true));
        const AudioBridge& bridge = *_session->parts.bridge;
        QTRY_VERIFY(bridge.bands()[1] > 0.8F && bridge.bands()[3] < 0.05F);
        _service->togglePlayPause();
        QTRY_COMPARE(_page.state(), u"paused 2 toggles 0 next 0 previous"_s);
        _service->togglePlayPause();
        QTRY_COMPARE(_page.state(), u"playing 3 toggles 0 next 0 previous"_s);
        _service->nextTrack();
        _service->previousTrack();
        QTRY_COMPARE(_page.state(), u"playing 3 toggles 1 next 1 previous"_s);
        const QRegularExpression typed(u" → keystroke pid [0-9]+$"_s);
        QCOMPARE(_session->log.take().filter(typed).size(), 4);

        // Behind another program. A music player that is paused is left alone, and so is playerctl's proxy.
        const Program front(u"xmessage"_s, {u"In front"_s});
        const Workspace& workspace = _session->ports.workspace;
        QTRY_VERIFY(!workspace.frontmostApplication().value_or(RunningApplication()).bundleId);
        const Program proxy(u"playerctld"_s);
        QVERIFY(_mpv.start());
        QTRY_COMPARE_WITH_TIMEOUT(_service->activePlayer(), Player::appleMusic, 10'000);
        RealPlayer::tell(u"pause"_s);
        QTRY_VERIFY_WITH_TIMEOUT(_session->isShowingSystemAudio(true), 10'000);
        _service->togglePlayPause();
        QTRY_COMPARE(_page.state(), u"paused 4 toggles 1 next 1 previous"_s);
        _service->togglePlayPause();
        QTRY_COMPARE(_page.state(), u"playing 5 toggles 1 next 1 previous"_s);
        _service->nextTrack();
        QTRY_COMPARE(_page.state(), u"playing 5 toggles 2 next 1 previous"_s);
        QCOMPARE(_session->log.take().filter(u" → broadcast (front=?)"_s).size(), 3);
        QCOMPARE(RealPlayer::status(), u"Paused"_s);

        Grabber grabber;
        _service->togglePlayPause();
        QTRY_COMPARE(grabber.keys(), u"down up"_s);
        run(u"xdotool keydown Shift_L"_s);
        _service->nextTrack();
        QTRY_COMPARE(grabber.keys(), u"down up down up"_s);
        run(u"xdotool keyup Shift_L"_s);
        QCOMPARE(_page.state(), u"playing 5 toggles 2 next 1 previous"_s);
    }

private:
    WebPage _page;
    RealPlayer _mpv;
    std::unique_ptr<Session> _session;
    NowPlayingService* _service = nullptr;
};

QTEST_MAIN(SessionTest)
#include "session_test.moc"
