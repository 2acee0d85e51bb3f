#pragma once

#include "linux/mpris/MprisPlayer.h"

/// What a player showed before and what it shows now: whom that concerns, and when.
struct PlayerChange {
    const MprisPlayer::State& before;
    const MprisPlayer::State& after;

    /// Whether the position starts anew. Players that tell of a track bit by bit leave out at first what
    /// comes later.
    bool isOtherTrack() const;

    /// Whether a notification is due. A cover or a length that comes late is none of it: to tell of a paused
    /// player that it is paused would take the display from what plays.
    bool isNews() const;

    /// Whether a notification does not tell it all: it never ends the state, and a track that bears the name
    /// of the one before is the same to it.
    bool isMoreThanNews() const;

    /// How long the burst of signals that this is part of is given to come to rest, in seconds.
    double rest() const;
};
