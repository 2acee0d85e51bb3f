#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "audio/MediaKeyTarget.h"
#include "audio/MediaKeys.h"
#include "audio/PlayerChoice.h"
#include "base/NotificationCenter.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

using Key = MediaKeys::Key;

namespace {

const QString sourcesKey = u"pellar.audio.sources"_s;

struct Sources {
    explicit Sources(const QVariant& stored = {})
        : manager((defaults.values.insert(sourcesKey, stored), defaults), notifications, bridge)
    {
    }
    MemoryDefaults defaults;
    ManualRunLoop runLoop;
    NotificationCenter notifications;
    AudioBridge bridge{runLoop, defaults, nullptr};
    AudioSourceManager manager;
};

/// Players by their names and then "M" or "S": takes that role, "?": silent, ">": playing since, "<": last
/// played.
QList<MediaPlayer> players(const char* texts)
{
    static const QRegularExpression form(u"([a-zA-Z0-9._-]*[a-z0-9._-])([MS]?)([?]?)(?:([<>])([0-9]+))?"_s);
    QList<MediaPlayer> players;
    for (const auto& match : form.globalMatch(QString::fromLatin1(texts))) {
        MediaPlayer player{.id = match.captured(1), .names = {match.captured(1)}};
        player.isReachable = match.captured(3).isEmpty();
        player.isPlaying = match.captured(4) == u'>';
        (player.isPlaying ? player.playingSince : player.lastPlayed) =
            match.captured(4).isEmpty() ? Uptime::distantPast() : Uptime{match.captured(5).toDouble()};
        if (!match.captured(2).isEmpty()) {
            player.roles = {match.captured(2) == u'M' ? PlayerRole::music : PlayerRole::spotify};
        }
        players.append(player);
    }
    return players;
}

} // namespace

/// Which sound and which players are followed and commanded.
class AudioSourcesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toggle()
    {
        using Row = std::tuple<QVariant, int, int>;
        for (const auto& [stored, toggled, after] : // unknown bits stay
             {Row{{}, 1, 2}, {1LL << 32, 4, 7}, {u"4"_s, 3, 0}, {1LL, 3, 3}, {9LL, 1, 8}}) {
            Sources sources(stored);
            QVERIFY(!sources.bridge.isEnabled()); // reading is no assignment
            sources.manager.toggle(AudioSources::fromInt(toggled));
            QCOMPARE(sources.manager.enabledSources().toInt(), after);
            QCOMPARE(sources.defaults.integer(sourcesKey), std::optional(qlonglong{after}));
        }
    }

    void assignmentsAreStoredThenTold()
    {
        Sources sources;
        QList<std::optional<qlonglong>> stored;
        const auto look = [&](const QVariantMap&) { stored << sources.defaults.integer(sourcesKey); };
        sources.notifications.observe(u"com.orvalen.pellar.audioSourceChanged"_s, &sources.manager, look);
        sources.manager.toggle(AudioSource::systemAudio);
        QVERIFY(sources.bridge.isEnabled() && sources.bridge.hasUserDecided());
        sources.manager.setEnabledSources(AudioSource::spotify);
        QCOMPARE(stored, (QList<std::optional<qlonglong>>{7, 2}));
        QVERIFY(sources.bridge.isEnabled()); // the source does not switch it off again
    }

    void bridgeFollowsItsSwitch()
    {
        ManualRunLoop runLoop;
        MemoryDefaults defaults;
        auto* const capture = new FakeCapture;
        AudioBridge bridge(runLoop, defaults, std::unique_ptr<AudioCapture>(capture));
        bridge.start();
        QVERIFY(!capture->isRunning && !bridge.isEnabled() && !bridge.hasUserDecided());
        bridge.setEnabled(false); // an equal value is a decision, too
        QVERIFY(bridge.hasUserDecided());
        bridge.setEnabled(true);
        Q_EMIT capture->liveChanged(true);
        Q_EMIT capture->bandsPublished({1, 1, 1, 1});
        QVERIFY(capture->isRunning && bridge.isLive() && bridge.bands()[3] == 1);
        bridge.setEnabled(false);
        runLoop.settle();
        QVERIFY(!capture->isRunning && !bridge.isLive() && bridge.bands() == QList<float>(4));
    }

    void keyTakesOneWay()
    {
        const QMap<Key, QString> strokes = {{Key::playPause, u"keystroke \" \"\n"_s},
                                            {Key::next, u"keystroke \"N\" using {shift down}\n"_s},
                                            {Key::previous, u"keystroke \"P\" using {shift down}\n"_s}};
        const QString browser = u"com.apple.Safari"_s;
        const QString music = u"com.apple.Music"_s;
        const std::vector<std::tuple<QString, QString, bool, bool, QString>> rows = {
            // in front, the browser's reply, whether the key is grabbed and a player there, the ways taken
            {browser, u"OK"_s, false, true, u"type"_s}, {browser, u"ERR: gone"_s, true, true, u"type post"_s},
            {browser, {}, false, true, u"type send"_s}, // not permitted
            {music, u"OK"_s, true, true, u"post"_s},    {{}, u"OK"_s, false, true, u"send"_s},
            {{}, u"OK"_s, false, false, u"post"_s}};
        const LogFile log;
        for (const auto& [front, reply, isGrabbed, isPlayer, expected] : rows) {
            FakePlatform desktop;
            desktop.workspace.front = RunningApplication{.processId = 4711, .bundleId = front};
            desktop.eventTaps.isGrabbed = isGrabbed;
            desktop.scripts.otherwise.reply = reply;
            if (isPlayer) {
                desktop.mediaPlayers.players = {{.id = u":1.7"_s, .isPlaying = true}};
            }
            for (const Key key : strokes.keys()) {
                MediaKeys(desktop.ports).send(key);
                QStringList way;
                for (const QString& typed : desktop.scripts.take()) {
                    way << (typed.contains(u"id is 4711"_s) && typed.contains(strokes[key]) ? u"type"_s
                                                                                            : typed);
                }
                for (const auto& sent : std::exchange(desktop.mediaPlayers.sent, {})) {
                    way << (sent.first == u":1.7" ? u"send"_s : sent.first);
                }
                const auto posted = std::exchange(desktop.eventTaps.posted, {});
                if (posted.size() == 4) { // down and up, at two places
                    way << (posted[3].first.data1 == (static_cast<int>(key) << 16 | 0xB00) ? u"post"_s
                                                                                           : u"?"_s);
                }
                QCOMPARE(way.join(u' '), expected);
            }
        }
    }

    void deafPageIsCommanded()
    {
        const std::vector<std::pair<QString, int>> rows = {
            // space or shift-N; p, r: the page pauses, resumes; digits: tenths of a second; and the commands
            {u" 1p9 1r99"_s, 0},                       // it reacts
            {u" 8"_s, 0},         {u" 99"_s, 1},       // it has had its second
            {u" 99p9 99r9"_s, 2}, {u" 3 99"_s, 0},     // undone
            {u" 3 3 99"_s, 1},    {u" 3p1 3r99"_s, 0}, // slow, pressed again
            {u"N99"_s, 0},                             // shows no effect
            {u" 3q99"_s, 0},                           // the browser quits
            {u"e 99"_s, 0}};                           // sounds elsewhere
        const LogFile log;
        for (const auto& [events, commands] : rows) {
            FakePlatform desktop;
            desktop.workspace.front =
                RunningApplication{.processId = 4711, .bundleId = u"org.mozilla.firefox"_s};
            desktop.scripts.otherwise.reply = u"OK"_s;
            QList<MediaPlayer>& players = desktop.mediaPlayers.players;
            players = {{.id = u":1.7"_s, .isPlaying = true, .lastPlayed = {1}, .processId = 4711}};
            MediaKeys keys(desktop.ports);
            for (const QChar event : events) {
                if (event == u' ' || event == u'N') {
                    keys.send(event == u' ' ? Key::playPause : Key::next);
                } else if (event == u'p' || event == u'r') {
                    players[0].isPlaying = event == u'r';
                } else if (event == u'q') {
                    players.clear();
                } else if (event == u'e') {
                    players[0].processId = std::nullopt;
                } else {
                    desktop.runLoop.advance(event.digitValue() * 0.1);
                }
            }
            QVERIFY2(desktop.mediaPlayers.sent.size() == commands, qPrintable(events));
            QVERIFY(desktop.eventTaps.posted.isEmpty());
        }
    }

    void castsRoles()
    {
        struct Row {
            const char* name;
            const char* there;
            const char* preferred;
            int music = -1; ///< which of them, or -1
            int spotify = -1;
        };
        for (const auto& [name, there, preferred, music, spotify] :
             {Row{"never played", "mpv", "", 0},
              {"last to play", "mpv<5 rhythmbox<9 vlc<7", "", 1},
              {"playing before last to play", "mpv>3 rhythmbox<9", "", 0},
              {"latest to start", "mpv>3 vlc>8 rhythmbox>5", "", 1},
              {"browsers", "firefox.instance_1_22>9 chromium.instance7>8 org.gnome.Epiphany.instance7>9", ""},
              {"proxies, a phone", "playerctld>9 plasma-browser-integration>9 kdeconnect.mpris_000001>9", ""},
              {"both roles", "spotify>9 mpv<1", "", 1, 0},
              {"the first of equals", "mpv<5 vlc<5", "", 0},
              {"unless another has the role", "mpv<5 vlcM<5", "", 1},
              {"one that answers before one that does not", "mpv?>9 vlc<1", "", 1},
              {"two Spotify clients", "spotify<1 spotifyd.instance5>2", "", -1, 1},
              {"the user's choice", "mpv>9 rhythmbox<1", "rhythmbox", 1},
              {"an instance of it", "mpv>9 vlc.instance77", "vlc", 1},
              {"the choice does not run", "mpv>9 vlc2>9", "vlc"}}) {
            MemoryDefaults defaults;
            defaults.setObject(u"pellar.linux.musicPlayer"_s, QString::fromLatin1(preferred));
            const PlayerChoice choice(defaults);
            const auto cast = [&choice, present = players(there)](PlayerRole role) {
                return static_cast<int>(choice.choose(role, present).value_or(-1));
            };
            QVERIFY2(cast(PlayerRole::music) == music && cast(PlayerRole::spotify) == spotify, name);
        }
    }

    void addressesMediaKeys()
    {
        using Row =
            std::array<const char*, 4>; // what it is about, who is there, who was addressed, who is now
        for (const auto& [name, there, addressed, expected] :
             {Row{"nobody", "", "", ""},
              {"the latest to start", "chromium>5 firefox>7", "", "firefox"},
              {"it has obeyed and is paused", "chromium<5 firefox<7", "chromium", "chromium"},
              {"what sounds before what was addressed", "chromium<5 firefox>7", "chromium", "firefox"},
              {"no proxy, no phone", "playerctld>9 kdeconnect.mpris_000001>9 chromium>5 mpvM<3", "",
               "chromium"},
              {"players in a role rest", "mpvM<9 spotifyS<9", "", ""},
              {"one in a role that was addressed", "mpvM<9", "mpv", "mpv"},
              {"one that does not answer", "chromium?>9", "", ""}}) {
            const auto candidates = players(there);
            const MediaPlayer* const target = mediaKeyTarget(candidates, QString::fromLatin1(addressed));
            QVERIFY2((target != nullptr ? target->id : QString()) == QLatin1String(expected), name);
        }
    }
};

QTEST_GUILESS_MAIN(AudioSourcesTest)
#include "audio_sources_test.moc"
