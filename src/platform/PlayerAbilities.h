#pragma once

/// What a player offers beyond playing.
struct PlayerAbilities {
    bool canRate = false;       ///< tracks can be loved
    bool canListTracks = false; ///< it tells what stands around the current track
};
