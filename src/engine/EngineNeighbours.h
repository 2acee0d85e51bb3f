#pragma once

#include "audio/MediaKeys.h"
#include "engine/Player.h"
#include "engine/UpNextTrack.h"

#include <QImage>
#include <QString>

#include <functional>

/// What the engine tells the facilities around it. None of its decisions waits on them; an empty function is
/// a facility that is not there.
struct EngineNeighbours {
    /// A second of listening to an artist has passed.
    std::function<void(const QString& artist)> countListeningSecond = {};

    /// A new track has begun on a player.
    std::function<void(const QString& title, const QString& artist, const QString& album, Player source)>
        recordPlayedTrack = {};

    /// The artwork on show has changed; a null image for none.
    std::function<void(const QImage& artwork)> updateThemeArtwork = {};

    /// Finds the cover of the Music track on show, unless it is on show already.
    std::function<void()> fetchMusicArtwork = {};

    /// Loads the cover that Spotify names.
    std::function<void(const QString& url)> fetchSpotifyArtwork = {};

    /// Spotify has become the active player.
    std::function<void()> refreshSpotifyQueue = {};

    /// The queue as the Spotify account last told it.
    std::function<QList<UpNextTrack>()> cachedSpotifyQueue = {};

    /// Delivers a key to what makes the sound.
    std::function<void(MediaKeys::Key key)> sendMediaKey = {};
};
