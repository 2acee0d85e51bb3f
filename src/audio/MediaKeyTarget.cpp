#include "audio/MediaKeyTarget.h"

#include <tuple>

const MediaPlayer* mediaKeyTarget(const QList<MediaPlayer>& players, const QString& addressed)
{
    const auto rank = [&addressed](const MediaPlayer& player) {
        return std::tuple(player.isPlaying, player.isPlaying || player.id == addressed,
                          player.isPlaying ? player.playingSince : player.lastPlayed);
    };
    const MediaPlayer* best = nullptr;
    for (const MediaPlayer& player : players) {
        const bool isProxy = player.names.contains(QStringLiteral("playerctld"));
        const bool isAtRest = !player.isPlaying && player.id != addressed &&
                              (!player.roles.isEmpty() || player.lastPlayed == Uptime::distantPast());
        if (player.isReachable && !isProxy && !isAtRest && (best == nullptr || rank(*best) < rank(player))) {
            best = &player;
        }
    }
    return best;
}
