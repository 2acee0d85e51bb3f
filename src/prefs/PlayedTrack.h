#pragma once

#include "base/Date.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// A track that was played.
struct PlayedTrack {
    QString title;
    QString artist;
    QString album;
    Date playedAt;  ///< when it began
    QString source; ///< the player, by the name that the engine gives it

    friend bool operator==(const PlayedTrack&, const PlayedTrack&) = default;
};

/// A JSON array of objects with the track's fields, `playedAt` in seconds since the reference date.
QByteArray encodePlayedTracks(const QList<PlayedTrack>& tracks);

/// Nothing when anything in the text is of another form than it is encoded in. Unknown fields do no harm.
std::optional<QList<PlayedTrack>> decodePlayedTracks(const QByteArray& json);
