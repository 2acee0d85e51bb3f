#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// The track that a player's metadata describes.
struct MprisTrack {
    QString id = {}; ///< the D-Bus object path, or whatever the player gives in its place; empty when none
    QString title = {};
    QString artist = {}; ///< several artists joined by ", "
    QString album = {};
    QString artworkUrl = {};
    QString location = {};             ///< the address of its file or stream; empty when unknown
    QString lyrics = {};               ///< with times or without; empty when the player has none
    std::optional<double> length = {}; ///< seconds, above 0; none when unknown, as for streams

    /// A player without a track, or one that has not told its title yet.
    bool isBlank() const { return title.isEmpty(); }

    /// Whether everything is there that players usually tell of a song.
    bool isComplete() const { return !title.isEmpty() && !artist.isEmpty() && length.has_value(); }

    /// Whether its id can be sent to the player as what it is.
    bool hasProperId() const;

    friend bool operator==(const MprisTrack&, const MprisTrack&) = default;

    /// Reads an MPRIS metadata map, as D-Bus delivers it, with the liberties that players take: lists given
    /// as one string, lengths of any number type, no title (the file's name stands in). Never fails: what
    /// cannot be read is left empty.
    static MprisTrack fromMetadata(const QVariantMap& metadata);
};
