#pragma once

#include <functional>

/// The media keys that a command becomes when the source is whatever the computer sounds like. The values are
/// the auxiliary-control key codes.
enum class MediaKey { playPause = 16, next = 17, previous = 18 };

/// What the engine tells the facilities around it. None of its decisions waits on them; an empty function is
/// a facility that is not there.
struct EngineNeighbours {
    /// Spotify has become the active player.
    std::function<void()> refreshSpotifyQueue;

    /// Delivers a key to what makes the sound.
    std::function<void(MediaKey key)> sendMediaKey;
};
