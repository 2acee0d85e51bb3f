#pragma once

#include "linux/mpris/MprisPlayer.h"

/// A change of a player's state, and what follows from it.
struct PlayerChange {
    const MprisPlayer::State& before;
    const MprisPlayer::State& after;

    /// Whether the position starts anew. Players that tell of a track bit by bit leave out at first what
    /// comes later.
    bool isOtherTrack() const;

    /// Whether a notification is due. A late cover or length calls for none: to repeat that a player is
    /// paused would take the display from the one that plays.
    bool isNews() const;

    /// Whether a notification is not enough: none can say that a player has stopped, or that a track of the
    /// same name is another one.
    bool isMoreThanNews() const;

    /// How long the burst of signals that this is part of is given to come to rest, in seconds.
    double rest() const;
};
