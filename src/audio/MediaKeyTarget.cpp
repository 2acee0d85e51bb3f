#include "audio/MediaKeyTarget.h"

#include <algorithm>
#include <tuple>

const MediaPlayer* mediaKeyTarget(const QList<MediaPlayer>& players, const QString& addressed)
{
    const auto rank = [&addressed](const MediaPlayer& player) {
        return std::tuple(player.isPlaying, player.isPlaying || player.id == addressed,
                          player.isPlaying ? player.playingSince : player.lastPlayed);
    };
    const MediaPlayer* best = nullptr;
    for (const MediaPlayer& player : players) {
        // A proxy repeats another player, and a phone is not this computer.
        const bool isElsewhere =
            std::any_of(player.names.begin(), player.names.end(), [](const QString& name) {
                return name == QStringLiteral("playerctld") || name.startsWith(QStringLiteral("kdeconnect"));
            });
        const bool isAtRest = !player.isPlaying && player.id != addressed &&
                              (!player.roles.isEmpty() || player.lastPlayed == Uptime::distantPast());
        if (player.isReachable && !isElsewhere && !isAtRest &&
            (best == nullptr || rank(*best) < rank(player))) {
            best = &player;
        }
    }
    return best;
}
