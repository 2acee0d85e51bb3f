#include "audio/MediaKeyTarget.h"
#include "audio/PlayerChoice.h"
#include "support/MemoryDefaults.h"

#include <QRegularExpression>
#include <QTest>

namespace {

/// A player by its name and then ">": playing since, "<": last played, "M" or "S": takes that role, "?":
/// silent.
MediaPlayer player(const QString& text)
{
    static const QRegularExpression form(
        QStringLiteral("^([a-zA-Z0-9._-]*[a-z0-9._-])([MS]*)([?]?)(?:([<>])([0-9]+))?$"));
    const auto match = form.match(text);
    MediaPlayer player{.id = match.captured(1), .names = {match.captured(1)}};
    player.isReachable = match.captured(3).isEmpty();
    player.isPlaying = match.captured(4) == u'>';
    (player.isPlaying ? player.playingSince : player.lastPlayed) =
        match.captured(4).isEmpty() ? Uptime::distantPast() : Uptime{match.captured(5).toDouble()};
    if (match.captured(2).contains(u'M')) {
        player.roles.append(PlayerRole::music);
    }
    if (match.captured(2).contains(u'S')) {
        player.roles.append(PlayerRole::spotify);
    }
    return player;
}

QList<MediaPlayer> players(const QString& texts)
{
    QList<MediaPlayer> players;
    const auto parts = texts.split(u' ', Qt::SkipEmptyParts);
    for (const QString& text : parts) {
        players.append(player(text));
    }
    return players;
}

} // namespace

/// Whom the program follows and whom it commands, among many.
class PlayerChoiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void castsRoles_data();
    void castsRoles();
    void addressesMediaKeys_data();
    void addressesMediaKeys();
};

void PlayerChoiceTest::castsRoles_data()
{
    QTest::addColumn<QString>("there");
    QTest::addColumn<QString>("preferred");
    QTest::addColumn<int>("music");
    QTest::addColumn<int>("spotify");
    const auto row = [](const char* name, const char* there, const char* preferred, int music, int spotify) {
        QTest::newRow(name) << QString::fromLatin1(there) << QString::fromLatin1(preferred) << music
                            << spotify;
    };
    row("nobody", "", "", -1, -1);
    row("never played", "mpv", "", 0, -1);
    row("last to play", "mpv<5 rhythmbox<9 vlc<7", "", 1, -1);
    row("playing before last to play", "mpv>3 rhythmbox<9", "", 0, -1);
    row("latest to start", "mpv>3 vlc>8 rhythmbox>5", "", 1, -1);
    row("instances", "vlc.instance123<1 mpv.instance-42<2", "", 1, -1);
    row("browsers and proxies are none",
        "firefox.instance_1_22>9 chromium.instance7>8 playerctld>9 plasma-browser-integration>9", "", -1, -1);
    row("a browser by its identifier, a phone", "org.gnome.Epiphany.instance7>9 kdeconnect.mpris_000001>9",
        "", -1, -1);
    row("both roles", "spotify>9 mpv<1", "", 1, 0);
    row("the first of equals", "mpv<5 vlc<5", "", 0, -1);
    row("unless another has the role", "mpv<5 vlcM<5", "", 1, -1);
    row("one that answers before one that does not", "mpv?>9 vlc<1", "", 1, -1);
    row("two Spotify clients", "spotify<1 spotifyd.instance5>2", "", -1, 1);
    row("the user's choice", "mpv>9 rhythmbox<1", "rhythmbox", 1, -1);
    row("an instance of it", "mpv>9 vlc.instance77", "vlc", 1, -1);
    row("the choice does not run", "mpv>9 vlc2>9", "vlc", -1, -1);
}

void PlayerChoiceTest::castsRoles()
{
    QFETCH(QString, there);
    QFETCH(QString, preferred);
    MemoryDefaults defaults;
    defaults.setObject(QStringLiteral("pellar.linux.musicPlayer"), preferred);
    const PlayerChoice choice(defaults);
    QTEST(static_cast<int>(choice.choose(PlayerRole::music, players(there)).value_or(-1)), "music");
    QTEST(static_cast<int>(choice.choose(PlayerRole::spotify, players(there)).value_or(-1)), "spotify");
}

void PlayerChoiceTest::addressesMediaKeys_data()
{
    QTest::addColumn<QString>("there");
    QTest::addColumn<QString>("addressed");
    QTest::addColumn<QString>("target");
    const auto row = [](const char* name, const char* there, const char* addressed, const char* target) {
        QTest::newRow(name) << QString::fromLatin1(there) << QString::fromLatin1(addressed)
                            << QString::fromLatin1(target);
    };
    row("nobody", "", "", "");
    row("what sounds", "chromium>5 mpvM<9", "", "chromium");
    row("the latest to start", "chromium>5 firefox>7", "", "firefox");
    row("it has obeyed and is paused", "chromium<5 firefox<7", "chromium", "chromium");
    row("what sounds before what was addressed", "chromium<5 firefox>7", "chromium", "firefox");
    row("nobody was addressed", "chromium<5 firefox<7", "", "firefox");
    row("never the proxy", "playerctld>9 chromium>5 mpvM<3", "", "chromium");
    row("never a phone", "kdeconnect.mpris_000001>9 chromium>5", "", "chromium");
    row("players in a role rest", "mpvM<9 spotifyS<9", "", "");
    row("one in a role that was addressed", "mpvM<9", "mpv", "mpv");
    row("one that never played", "chromium", "", "");
    row("one that does not answer", "chromium?>9", "", "");
}

void PlayerChoiceTest::addressesMediaKeys()
{
    QFETCH(QString, there);
    QFETCH(QString, addressed);
    const auto candidates = players(there);
    const MediaPlayer* const target = mediaKeyTarget(candidates, addressed);
    QTEST(target != nullptr ? target->id : QString::fromLatin1(""), "target");
}

QTEST_GUILESS_MAIN(PlayerChoiceTest)
#include "player_choice_test.moc"
