#pragma once

#include "engine/Player.h"

#include <optional>

/// One reply of a player's status script, as far as the engine reads it.
struct PlayerStatus {
    QString title;
    QString artist;
    QString album;
    double duration = 0; ///< seconds
    double position = 0; ///< seconds
    bool isPlaying = false;
    std::optional<QString> artworkUrl; ///< Spotify only; never blank

    friend bool operator==(const PlayerStatus&, const PlayerStatus&) = default;
};

/// Reads a status reply. Nothing when the player has no track or the reply has fewer than six fields.
std::optional<PlayerStatus> parseStatusReply(const QString& reply, Player player);
