#pragma once

#include "platform/MediaPlayers.h"

/// Who takes the roles of "Music" and "Spotify". The program says so to the platform, which asks anew
/// whenever a player comes, goes or changes.
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
