#include "audio/MediaKeyTarget.h"
#include "audio/PlayerChoice.h"
#include "support/MemoryDefaults.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

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

/// Whom the program follows and whom it commands, among many.
class PlayerChoiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
             {Row{"nobody", "", ""},
              {"never played", "mpv", "", 0},
              {"last to play", "mpv<5 rhythmbox<9 vlc<7", "", 1},
              {"playing before last to play", "mpv>3 rhythmbox<9", "", 0},
              {"latest to start", "mpv>3 vlc>8 rhythmbox>5", "", 1},
              {"instances", "vlc.instance123<1 mpv.instance-42<2", "", 1},
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
            const auto cast = [&](PlayerRole role) {
                return static_cast<int>(choice.choose(role, players(there)).value_or(-1));
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
              {"what sounds", "chromium>5 mpvM<9", "", "chromium"},
              {"the latest to start", "chromium>5 firefox>7", "", "firefox"},
              {"it has obeyed and is paused", "chromium<5 firefox<7", "chromium", "chromium"},
              {"what sounds before what was addressed", "chromium<5 firefox>7", "chromium", "firefox"},
              {"nobody was addressed", "chromium<5 firefox<7", "", "firefox"},
              {"no proxy, no phone", "playerctld>9 kdeconnect.mpris_000001>9 chromium>5 mpvM<3", "",
               "chromium"},
              {"players in a role rest", "mpvM<9 spotifyS<9", "", ""},
              {"one in a role that was addressed", "mpvM<9", "mpv", "mpv"},
              {"one that never played", "chromium", "", ""},
              {"one that does not answer", "chromium?>9", "", ""}}) {
            const auto candidates = players(there);
            const MediaPlayer* const target = mediaKeyTarget(candidates, QString::fromLatin1(addressed));
            QVERIFY2((target != nullptr ? target->id : QString()) == QLatin1String(expected), name);
        }
    }
};

QTEST_GUILESS_MAIN(PlayerChoiceTest)
#include "player_choice_test.moc"
