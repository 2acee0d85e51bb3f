#pragma once

#include "audio/MediaKeys.h"
#include "prefs/UpNextTrack.h"

#include <QList>

#include <functional>

/// What the engine tells the facilities around it. None of its decisions waits on them; an empty function is
/// a facility that is not there.
struct EngineNeighbours {
    /// Spotify has become the active player.
    std::function<void()> refreshSpotifyQueue = {};

    /// The queue as the Spotify account last told it.
    std::function<QList<UpNextTrack>()> cachedSpotifyQueue = {};

    /// Delivers a key to what makes the sound.
    std::function<void(MediaKeys::Key key)> sendMediaKey = {};
};
