#pragma once

#include "base/Date.h"

#include <QJsonObject>
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

    /// An object with the fields above, `playedAt` in seconds since the reference date.
    QJsonObject json() const;
    /// None without a title. What else is missing is empty. Unknown fields do no harm.
    static std::optional<PlayedTrack> fromJson(const QJsonObject& object);
};
