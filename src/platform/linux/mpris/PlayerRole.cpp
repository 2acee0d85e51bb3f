#include "platform/linux/mpris/PlayerRole.h"

#include "platform/BundleId.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace {

/// Bus names of browsers, whose tabs come and go as players, and of proxies, which repeat another player.
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
});

bool matchesRole(PlayerRole role, const QString& suffix, const QString& preferredMusicPlayer)
{
    if (role == PlayerRole::spotify) {
        return suffix.startsWith(QStringLiteral("spotify"));
    }
    if (!preferredMusicPlayer.isEmpty()) {
        return suffix == preferredMusicPlayer || suffix.startsWith(preferredMusicPlayer + u'.');
    }
    return std::none_of(notMusicPlayers.begin(), notMusicPlayers.end(),
                        [&](const QString& name) { return suffix.startsWith(name); });
}

auto rank(const PlayerCandidate& candidate)
{
    const Date since = candidate.isPlaying ? candidate.playingSince : candidate.lastPlayed;
    return std::tuple(candidate.isReachable, candidate.isPlaying, since, candidate.hasRole);
}

} // namespace

QString bundleId(PlayerRole role)
{
    return role == PlayerRole::music ? BundleId::music : BundleId::spotify;
}

std::optional<PlayerRole> roleWithBundleId(const QString& id)
{
    for (const PlayerRole role : {PlayerRole::music, PlayerRole::spotify}) {
        if (bundleId(role) == id) {
            return role;
        }
    }
    return std::nullopt;
}

std::optional<size_t> choosePlayer(PlayerRole role, const std::vector<PlayerCandidate>& candidates,
                                   const QString& preferredMusicPlayer)
{
    std::optional<size_t> best;
    for (size_t i = 0; i < candidates.size(); ++i) {
        const auto& suffixes = candidates[i].suffixes;
        const bool matches = std::any_of(suffixes.begin(), suffixes.end(), [&](const QString& suffix) {
            return matchesRole(role, suffix, preferredMusicPlayer);
        });
        if (matches && (!best || rank(candidates[*best]) < rank(candidates[i]))) {
            best = i;
        }
    }
    return best;
}
