#include "engine/PlayerScripts.h"
#include "linux/script/Interpreter.h"
#include "support/ScriptedDictionary.h"

#include <QtTest>

using namespace PlayerScripts;

namespace {

constexpr Player music = Player::appleMusic;
constexpr Player spotify = Player::spotify;

QString browserKeystroke(int pid, const char* what)
{
    return QStringLiteral("tell application \"System Events\"\n    try\n"
                          "        set p to first process whose unix id is %1\n"
                          "        tell p to keystroke %2\n        return \"OK\"\n"
                          "    on error errMsg\n        return \"ERR: \" & errMsg\n    end try\nend tell")
        .arg(QString::number(pid), QString::fromLatin1(what));
}

/// The applications and an interpreter over them.
struct Desk {
    ScriptedDictionary applications;
    Interpreter interpreter{[this](const QString& name) { return applications.application(name); }};

    std::shared_ptr<ScriptedPlayer>& player(Player which)
    {
        return which == music ? applications.music : applications.spotify;
    }
    ScriptOutcome run(const QString& source) { return interpreter.run(source); }
    /// "none" without a reply, "error NUMBER" when the script failed.
    QString reply(const QString& source)
    {
        const ScriptOutcome outcome = run(source);
        return outcome.errorNumber ? QStringLiteral("error %1").arg(*outcome.errorNumber)
                                   : outcome.reply.value_or(QStringLiteral("none"));
    }
};

} // namespace

/// The program's own scripts as they stand, and what they bring about in the applications.
class ScriptTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void replies_data();
    void replies();
    void effects_data();
    void effects();
    void reactions();
    void bulkReadsTakeOneRequestEach();

private:
    std::unique_ptr<Desk> _desk;
};

void ScriptTest::init()
{
    _desk = std::make_unique<Desk>();
    _desk->player(music)->setTracks({{QStringLiteral("Dawn"), QStringLiteral("Ada"), 215.5},
                                     {QStringLiteral("Noon & Co"), QStringLiteral("Ada"), 12.0},
                                     {QStringLiteral("Dusk"), QStringLiteral("Bo"), 90.0},
                                     {QStringLiteral("dawn"), QStringLiteral("ada"), 1.0}});
    _desk->player(spotify)->setTracks({{QStringLiteral("Élan"), QStringLiteral("Cy"), qlonglong(215000)}});
}

void ScriptTest::replies_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("track"); // of both players; 0: none, -1: they do not run
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const QString& script, int track, const char* state,
                        const char* expected) {
        QTest::newRow(name) << script << track << QString::fromLatin1(state) << QString::fromUtf8(expected);
    };
    row("plays", status(music), 1, "playing", "Dawn|||Ada|||Hours|||215.5|||7.25|||true|||1000");
    row("is paused", status(music), 2, "paused", "Noon & Co|||Ada|||Hours|||12.0|||7.25|||false|||1001");
    row("is stopped", status(music), 1, "stopped", "STOPPED");
    row("plays nothing", status(music), 0, "playing", "STOPPED");
    row("does not run", status(music), -1, "", "STOPPED");
    row("spotify plays", status(spotify), 1, "playing",
        "Élan|||Cy|||Hours|||215000|||7.25|||true|||https://art.invalid/0");
    row("all that follow", upNextListing(8), 2, "playing", "3|||Dusk|||Bo###4|||dawn|||ada###");
    row("as many as asked for", upNextListing(1), 2, "playing", "3|||Dusk|||Bo###");
    row("the copy goes on behind the first", upNextListing(1), 4, "playing", "2|||Noon & Co|||Ada###");
    row("nothing plays, nothing follows", upNextListing(8), 0, "stopped", "");
    row("no reaction to nothing", reaction(), 0, "stopped", "false|false");
    row("probe in any case", automationProbe(QStringLiteral("mUsIc")), 1, "playing", "4");
    row("probe of the unknown", automationProbe(QStringLiteral("Tapes")), 1, "playing", "error -600");
    row("probe refused", automationProbe(QStringLiteral("Music")), 1, "refusing", "error -1743");
}

void ScriptTest::replies()
{
    QFETCH(const QString, script);
    QFETCH(const int, track);
    QFETCH(const QString, state);
    _desk->reply(script); // what a script saw before is forgotten
    for (const Player player : {music, spotify}) {
        auto& object = _desk->player(player);
        if (track < 0) {
            object.reset();
            continue;
        }
        object->playTrack(player == music ? track : qMin(track, 1));
        object->properties.insert(QStringLiteral("player position"), 7.25);
        object->properties.insert(QStringLiteral("player state"), ScriptConstant{state});
        object->refusal = state == QStringLiteral("refusing") ? -1743 : 0;
    }
    // A comma in the numbers of people, never in those of replies.
    const auto restore = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German));
    QTEST(_desk->reply(script), "expected");
}

void ScriptTest::effects_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected"); // "none" or the start of the reply, then what was told to whom
    const auto row = [](const QString& script, const char* expected) {
        QTest::newRow(script.simplified().toUtf8().constData()) << script << QString::fromLatin1(expected);
    };
    row(playPause(music), "none, Music playpause");
    row(playPause(spotify), "none, Spotify playpause");
    row(nextTrack(music), "none, Music next track");
    row(previousTrack(spotify), "none, Spotify previous track");
    row(pauseIfPlaying(music), "none, Music pause");
    row(pauseIfPlaying(spotify), "none"); // which is stopped
    row(seek(music, 42.5), "none, Music at 42.5");
    row(seek(spotify, 90), "none, Spotify at 90");
    row(seek(music, 1.5e-7), "none, Music at 1.5e-07");
    row(seek(music, -3), "none, Music at -3");
    row(playPlaylistTrack(3), "none, Music play Dusk");
    row(playPlaylistTrack(5), "none"); // behind the end
    row(musicStatement(QStringLiteral("set sound volume to 3")), "none");
    row(loveSpotify(), "none, Spotify process keystroke s using command down");
    row(spotifyKeystroke(QStringLiteral("s"), {}), "none, Spotify process keystroke s");
    row(browserKeystroke(4711, "\" \""), "OK, Firefox keystroke  ");
    row(browserKeystroke(4711, "\"P\" using {shift down, command down}"),
        "OK, Firefox keystroke P using shift down + command down");
    row(browserKeystroke(99, "\"N\""), "ERR");
}

void ScriptTest::effects()
{
    QFETCH(const QString, script);
    _desk->player(music)->playTrack(2);
    const auto position = QStringLiteral("player position");
    QStringList effects = {_desk->reply(script).section(u':', 0, 0)};
    const auto addCommands = [&effects](const QString& name, const ScriptedObject& object) {
        for (const QString& command : object.told) {
            effects.append(name + u' ' + command);
        }
    };
    for (const Player player : {music, spotify}) {
        addCommands(applicationName(player), *_desk->player(player));
        const ScriptValue value = _desk->player(player)->property(position);
        const auto* const whole = std::get_if<qlonglong>(&value.data);
        const double seconds = whole != nullptr ? static_cast<double>(*whole) : std::get<double>(value.data);
        if (seconds != 0) {
            effects.append(QStringLiteral("%1 at %2").arg(applicationName(player)).arg(seconds));
        }
    }
    addCommands(QStringLiteral("Spotify process"), *_desk->applications.spotifyProcess);
    addCommands(QStringLiteral("Firefox"), *_desk->applications.browserProcess);
    QTEST(effects.join(QStringLiteral(", ")), "expected");
}

void ScriptTest::reactions()
{
    _desk->player(music)->playTrack(2);
    _desk->run(loveMusic());
    QCOMPARE(_desk->reply(reaction()), QStringLiteral("true|false"));
    _desk->run(dislikeMusic());
    QCOMPARE(_desk->reply(reaction()), QStringLiteral("false|true"));
    const auto isDisliked = [this](int track) {
        return std::get<bool>(_desk->player(music)->track(track).property(QStringLiteral("disliked")).data);
    };
    QVERIFY(isDisliked(2) && !isDisliked(1));
}

void ScriptTest::bulkReadsTakeOneRequestEach()
{
    constexpr int count = 50'000;
    ScriptedPlayer& player = *_desk->player(music);
    QList<ScriptedPlayer::Track> tracks(count, {QString(), QStringLiteral("Ada"), 1.0});
    for (int i = 0; i < count; ++i) {
        tracks[i].title = QStringLiteral("Track %1").arg(i + 1);
    }
    player.setTracks(tracks);
    player.playTrack(count - 1);
    QCOMPARE(_desk->reply(upNextListing(8)), QStringLiteral("50000|||Track 50000|||Ada###"));
    const ScriptValue playlist = player.property(QStringLiteral("current playlist"));
    const auto& object = std::get<std::shared_ptr<ScriptObject>>(playlist.data);
    QCOMPARE(dynamic_cast<ScriptedObject&>(*object).reads, 2);
}

QTEST_GUILESS_MAIN(ScriptTest)
#include "script_test.moc"
