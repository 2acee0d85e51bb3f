#include "engine/PlayerScripts.h"
#include "platform/linux/script/Interpreter.h"
#include "support/ScriptedDictionary.h"

#include <QtTest>

namespace {

const QList<ScriptedPlayer::Track> songs = {
    {QStringLiteral("Dawn"), QStringLiteral("Ada"), QStringLiteral("Hours"), 215.5},
    {QStringLiteral("Noon & Co"), QStringLiteral("Ada"), QStringLiteral("Hours"), 12.0},
    {QStringLiteral("Dusk"), QStringLiteral("Bo"), QStringLiteral("Hours"), 90.0},
    {QStringLiteral("dawn"), QStringLiteral("ada"), QString(), 1.0},
};

QString browserKeystroke(const QString& pid, const QString& key, const QString& suffix)
{
    return QStringLiteral("tell application \"System Events\"\n    try\n"
                          "        set p to first process whose unix id is %1\n"
                          "        tell p to keystroke \"%2\"%3\n"
                          "        return \"OK\"\n    on error errMsg\n"
                          "        return \"ERR: \" & errMsg\n    end try\nend tell")
        .arg(pid, key, suffix);
}

/// The applications and an interpreter over them.
struct Desk {
    ScriptedDictionary applications;
    Interpreter interpreter{[this](const QString& name) { return applications.application(name); }};

    ScriptOutcome run(const QString& source) { return interpreter.run(source); }
    std::optional<QString> reply(const QString& source) { return run(source).reply; }
};

} // namespace

class ScriptTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void status_data();
    void status();
    void transport_data();
    void transport();
    void reactions();
    void keystrokes_data();
    void keystrokes();
    void upNext_data();
    void upNext();
    void bulkReadsTakeOneRequestEach();
    void probe_data();
    void probe();
    void aScriptSeesTheWorldAsItIsNow();

private:
    std::unique_ptr<Desk> _desk;
};

void ScriptTest::init()
{
    _desk = std::make_unique<Desk>();
    _desk->applications.music->setTracks(songs);
    _desk->applications.spotify->setTracks(
        {{QStringLiteral("Élan"), QStringLiteral("Cy"), QStringLiteral("One"), qlonglong(215000)}});
}

void ScriptTest::status_data()
{
    QTest::addColumn<bool>("isMusic");
    QTest::addColumn<int>("track"); // 0: stopped, -1: not running
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* name, bool isMusic, int track, const char* state, const char* expected) {
        QTest::newRow(name) << isMusic << track << QString::fromUtf8(state) << QString::fromUtf8(expected);
    };
    row("music plays", true, 1, "playing", "Dawn|||Ada|||Hours|||215.5|||7.25|||true|||1000");
    row("music is paused", true, 2, "paused", "Noon & Co|||Ada|||Hours|||12.0|||7.25|||false|||1001");
    row("music winds forward", true, 3, "fast forwarding", "Dusk|||Bo|||Hours|||90.0|||7.25|||false|||1002");
    row("music is stopped", true, 1, "stopped", "STOPPED");
    row("music plays nothing", true, 0, "playing", "STOPPED");
    row("music does not run", true, -1, "", "STOPPED");
    row("spotify plays", false, 1, "playing",
        "Élan|||Cy|||One|||215000|||7.25|||true|||https://art.invalid/0");
    row("spotify does not run", false, -1, "", "STOPPED");
}

void ScriptTest::status()
{
    QFETCH(const bool, isMusic);
    QFETCH(const int, track);
    QFETCH(const QString, state);
    auto& player = isMusic ? _desk->applications.music : _desk->applications.spotify;
    if (track < 0) {
        player.reset();
    } else {
        player->playTrack(track);
        player->properties.insert(QStringLiteral("player position"), 7.25);
        player->properties.insert(QStringLiteral("player state"), ScriptConstant{state});
    }
    const QLocale before;
    QLocale::setDefault(
        QLocale(QLocale::German)); // a comma in the numbers of people, never in those of replies
    const auto reply = _desk->reply(PlayerScripts::status(isMusic ? Player::appleMusic : Player::spotify));
    QLocale::setDefault(before);
    QTEST(reply.value_or(QStringLiteral("none")), "expected");
}

void ScriptTest::transport_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("isMusic");
    QTest::addColumn<QStringList>("obeyed");
    QTest::addColumn<QString>("state");
    QTest::addColumn<int>("track");
    QTest::addColumn<double>("position");

    const auto text = [](const char* latin) { return QString::fromLatin1(latin); };
    using namespace PlayerScripts;
    constexpr Player music = Player::appleMusic;
    const QString playing = text("playing");
    const QStringList none;
    QTest::newRow("play/pause") << playPause(music) << true << QStringList{text("playpause")}
                                << text("paused") << 2 << 7.0;
    QTest::newRow("play/pause, Spotify") << playPause(Player::spotify) << false
                                         << QStringList{text("playpause")} << text("paused") << 1 << 7.0;
    QTest::newRow("next") << nextTrack(music) << true << QStringList{text("next track")} << playing << 3
                          << 0.0;
    QTest::newRow("previous") << previousTrack(music) << true << QStringList{text("previous track")}
                              << playing << 1 << 0.0;
    QTest::newRow("previous, Spotify") << previousTrack(Player::spotify) << false
                                       << QStringList{text("previous track")} << text("stopped") << 0 << 0.0;
    QTest::newRow("seek") << seek(music, 42.5) << true << none << playing << 2 << 42.5;
    QTest::newRow("seek to a whole second")
        << seek(Player::spotify, 90) << false << none << playing << 1 << 90.0;
    QTest::newRow("seek, with an exponent") << seek(music, 1.5e-7) << true << none << playing << 2 << 1.5e-7;
    QTest::newRow("seek before the start") << seek(music, -3) << true << none << playing << 2 << -3.0;
    QTest::newRow("pause if playing")
        << pauseIfPlaying(music) << true << QStringList{text("pause")} << text("paused") << 2 << 7.0;
    QTest::newRow("play a listed track")
        << playPlaylistTrack(3) << true << QStringList{text("play Dusk")} << playing << 3 << 0.0;
    QTest::newRow("play behind the end") << playPlaylistTrack(5) << true << none << playing << 2 << 7.0;
    QTest::newRow("a statement") << musicStatement(text("set player position to 11 div 2")) << true << none
                                 << playing << 2 << 5.0;
    QTest::newRow("a statement that fails")
        << musicStatement(text("set sound volume to 3")) << true << none << playing << 2 << 7.0;
}

void ScriptTest::transport()
{
    QFETCH(const QString, script);
    QFETCH(const bool, isMusic);
    ScriptedPlayer& player = isMusic ? *_desk->applications.music : *_desk->applications.spotify;
    player.playTrack(isMusic ? 2 : 1);
    player.properties.insert(QStringLiteral("player position"), 7.0);

    const ScriptOutcome outcome = _desk->run(script);

    QCOMPARE(outcome, ScriptOutcome());
    QTEST(player.obeyed, "obeyed");
    QTEST(player.state(), "state");
    QTEST(player.current(), "track");
    const ScriptValue position = player.property(QStringLiteral("player position"));
    const auto* const whole = std::get_if<qlonglong>(&position.data);
    QTEST(whole != nullptr ? static_cast<double>(*whole) : std::get<double>(position.data), "position");
    const ScriptedPlayer& other = isMusic ? *_desk->applications.spotify : *_desk->applications.music;
    QVERIFY(other.obeyed.isEmpty());
}

void ScriptTest::reactions()
{
    QCOMPARE(_desk->reply(PlayerScripts::reaction()), QStringLiteral("false|false")); // nothing plays
    _desk->applications.music->playTrack(2);
    _desk->run(PlayerScripts::loveMusic());
    QCOMPARE(_desk->reply(PlayerScripts::reaction()), QStringLiteral("true|false"));
    _desk->run(PlayerScripts::dislikeMusic());
    QCOMPARE(_desk->reply(PlayerScripts::reaction()), QStringLiteral("false|true"));
    const auto isMarked = [this](int track, const QString& mark) {
        return std::get<bool>(_desk->applications.music->track(track).property(mark).data);
    };
    QVERIFY(isMarked(2, QStringLiteral("disliked")));
    QVERIFY(!isMarked(1, QStringLiteral("disliked")) && !isMarked(2, QStringLiteral("loved")));
}

void ScriptTest::keystrokes_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("reply");   // the start of it; empty: none
    QTest::addColumn<QString>("pressed"); // in Spotify, in the browser
    const auto row = [](const char* name, const QString& script, const char* reply, const char* pressed) {
        QTest::newRow(name) << script << QString::fromLatin1(reply) << QString::fromLatin1(pressed);
    };
    const QString pid = QStringLiteral("4711");
    row("love in Spotify", PlayerScripts::loveSpotify(), "", "keystroke s using command down;");
    row("no modifiers", PlayerScripts::spotifyKeystroke(QStringLiteral("s"), {}), "", "keystroke s;");
    row("space in a browser", browserKeystroke(pid, QStringLiteral(" "), {}), "OK", ";keystroke  ");
    row("shift-N", browserKeystroke(pid, QStringLiteral("N"), QStringLiteral(" using {shift down}")), "OK",
        ";keystroke N using shift down");
    row("two modifiers",
        browserKeystroke(pid, QStringLiteral("P"), QStringLiteral(" using {shift down, command down}")), "OK",
        ";keystroke P using shift down + command down");
    row("no such process", browserKeystroke(QStringLiteral("99"), QStringLiteral("N"), {}), "ERR: C", ";");
}

void ScriptTest::keystrokes()
{
    QFETCH(const QString, script);
    QFETCH(const QString, reply);
    const ScriptOutcome outcome = _desk->run(script);
    QCOMPARE(outcome.errorNumber, std::nullopt);
    QCOMPARE(outcome.reply.has_value(), !reply.isEmpty());
    QCOMPARE(outcome.reply.value_or(QString()).left(reply.size()), reply);
    const auto& applications = _desk->applications;
    QTEST(QString(applications.spotifyProcess->obeyed.join(u',') + u';' +
                  applications.browserProcess->obeyed.join(u',')),
          "pressed");
}

void ScriptTest::upNext_data()
{
    QTest::addColumn<int>("track");
    QTest::addColumn<int>("limit");
    QTest::addColumn<QString>("expected");
    const QString second = QStringLiteral("2|||Noon & Co|||Ada###");
    const QString third = QStringLiteral("3|||Dusk|||Bo###");
    QTest::newRow("all that follow") << 1 << 8 << second + third + QStringLiteral("4|||dawn|||ada###");
    QTest::newRow("as many as asked for") << 1 << 2 << second + third;
    QTest::newRow("the copy at the end goes on behind the first") << 4 << 1 << second;
    QTest::newRow("none asked for") << 1 << 0 << QString();
    QTest::newRow("nothing plays") << 0 << 8 << QString();
}

void ScriptTest::upNext()
{
    QFETCH(const int, track);
    QFETCH(const int, limit);
    _desk->applications.music->playTrack(track);
    const ScriptOutcome outcome = _desk->run(PlayerScripts::upNextListing(limit));
    QVERIFY(outcome.reply.has_value());
    QTEST(*outcome.reply, "expected");
}

void ScriptTest::bulkReadsTakeOneRequestEach()
{
    auto playlist = std::make_shared<ScriptedObject>();
    auto& tracks = playlist->members[QStringLiteral("track")];
    constexpr int count = 50'000;
    for (int i = 1; i <= count; ++i) {
        auto track = std::make_shared<ScriptedObject>();
        track->properties = {{QStringLiteral("name"), QStringLiteral("Track %1").arg(i)},
                             {QStringLiteral("artist"), QStringLiteral("Ada")}};
        tracks.push_back(track);
    }
    ScriptedPlayer& music = *_desk->applications.music;
    music.properties.insert(QStringLiteral("current playlist"), std::shared_ptr<ScriptObject>(playlist));
    music.properties.insert(QStringLiteral("current track"), tracks[count - 2]);
    QCOMPARE(_desk->reply(PlayerScripts::upNextListing(8)), QStringLiteral("50000|||Track 50000|||Ada###"));
    QCOMPARE(playlist->reads, 2);
}

void ScriptTest::probe_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("refusal");
    QTest::addColumn<ScriptOutcome>("expected");
    const auto failure = [](int number) { return ScriptOutcome{std::nullopt, number, {}}; };
    QTest::newRow("granted") << QStringLiteral("Music") << 0
                             << ScriptOutcome{QStringLiteral("4"), std::nullopt, {}};
    QTest::newRow("in any case") << QStringLiteral("mUsIc") << 0
                                 << ScriptOutcome{QStringLiteral("4"), std::nullopt, {}};
    QTest::newRow("refused") << QStringLiteral("Music") << -1743 << failure(-1743);
    QTest::newRow("unknown") << QStringLiteral("Tapes") << 0 << failure(-600);
}

void ScriptTest::probe()
{
    QFETCH(const QString, name);
    QFETCH(const int, refusal);
    _desk->applications.music->refusal = refusal;
    ScriptOutcome outcome = _desk->run(PlayerScripts::automationProbe(name));
    QCOMPARE(outcome.errorMessage.isEmpty(), !outcome.errorNumber.has_value());
    outcome.errorMessage.clear();
    QTEST(outcome, "expected");
}

void ScriptTest::aScriptSeesTheWorldAsItIsNow()
{
    const QString script = PlayerScripts::status(Player::appleMusic);
    ScriptedPlayer& music = *_desk->applications.music;
    music.playTrack(3);
    QVERIFY(_desk->reply(script)->startsWith(QStringLiteral("Dusk|||")));
    music.playTrack(2);
    QVERIFY(_desk->reply(script)->startsWith(QStringLiteral("Noon & Co|||")));
    _desk->applications.music.reset();
    QCOMPARE(_desk->reply(script), QStringLiteral("STOPPED"));
}

QTEST_GUILESS_MAIN(ScriptTest)
#include "script_test.moc"
