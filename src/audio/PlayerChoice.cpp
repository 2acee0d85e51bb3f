#include "audio/PlayerChoice.h"

#include "platform/UserDefaults.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace {

const QString musicPlayerKey = QStringLiteral("pellar.linux.musicPlayer");

/// Names of browsers, whose tabs come and go as players, of proxies, which repeat another player, and of what
/// plays elsewhere, on a phone. In lower case; some browsers go by their application's identifier.
const auto notMusicPlayers = std::to_array<QString>({
    QStringLiteral("spotify"),
    QStringLiteral("playerctld"),
    QStringLiteral("plasma-browser-integration"),
    QStringLiteral("chromium"),
    QStringLiteral("chrome"),
    QStringLiteral("google-chrome"),
    QStringLiteral("firefox"),
    QStringLiteral("librewolf"),
    QStringLiteral("brave"),
    QStringLiteral("edge"),
    QStringLiteral("msedge"),
    QStringLiteral("microsoft-edge"),
    QStringLiteral("vivaldi"),
    QStringLiteral("opera"),
    QStringLiteral("epiphany"),
    QStringLiteral("org.gnome.epiphany"),
    QStringLiteral("kdeconnect"),
});

bool suits(PlayerRole role, const QString& name, const QString& preferred)
{
    if (role == PlayerRole::spotify) {
        return name.startsWith(QStringLiteral("spotify"));
    }
    if (!preferred.isEmpty()) {
        return name == preferred || name.startsWith(preferred + u'.');
    }
    return std::none_of(notMusicPlayers.begin(), notMusicPlayers.end(),
                        [&](const QString& other) { return name.startsWith(other, Qt::CaseInsensitive); });
}

auto rank(PlayerRole role, const MediaPlayer& player)
{
    const Uptime since = player.isPlaying ? player.playingSince : player.lastPlayed;
    return std::tuple(player.isReachable, player.isPlaying, since, player.roles.contains(role));
}

} // namespace

std::optional<qsizetype> PlayerChoice::choose(PlayerRole role, const QList<MediaPlayer>& players) const
{
    const QString preferred = namedByUser(_defaults);
    std::optional<qsizetype> best;
    for (qsizetype i = 0; i < players.size(); ++i) {
        const QStringList& names = players[i].names;
        const bool isSuited = std::any_of(names.begin(), names.end(),
                                          [&](const QString& name) { return suits(role, name, preferred); });
        if (isSuited && (!best || rank(role, players[*best]) < rank(role, players[i]))) {
            best = i;
        }
    }
    return best;
}

QString PlayerChoice::namedByUser(const UserDefaults& defaults)
{
    return defaults.string(musicPlayerKey).value_or(QString());
}
