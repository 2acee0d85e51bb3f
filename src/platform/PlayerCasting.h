#pragma once

#include "platform/MediaPlayers.h"

/// Decides which players take the roles of "Music" and "Spotify". The platform asks again whenever a player
/// comes, goes or changes.
class PlayerCasting
{
public:
    PlayerCasting() = default;
    virtual ~PlayerCasting() = default;
    PlayerCasting(const PlayerCasting&) = delete;
    PlayerCasting& operator=(const PlayerCasting&) = delete;

    /// An index into `players`; none when none of them suits.
    virtual std::optional<qsizetype> choose(PlayerRole role, const QList<MediaPlayer>& players) const = 0;
};
