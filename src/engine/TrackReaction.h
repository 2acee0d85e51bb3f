#pragma once

#include <QString>

#include <optional>

/// How the user has marked a track of Music.
struct TrackReaction {
    bool loved = false;
    bool disliked = false;

    friend bool operator==(const TrackReaction&, const TrackReaction&) = default;
};

/// Reads the reply of the reaction script, "true|false". What is missing or is no truth value counts as
/// false.
TrackReaction parseReactionReply(const std::optional<QString>& reply);
