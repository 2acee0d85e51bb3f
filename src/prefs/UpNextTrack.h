#pragma once

#include <QString>

/// A row of the up-next list.
struct UpNextTrack {
    QString title;
    QString artist;
    qint64 playlistIndex = 0; ///< of Music: 1-based in the current playlist

    friend bool operator==(const UpNextTrack&, const UpNextTrack&) = default;
};
