#pragma once

#include "lyrics/SyncedLyric.h"

/// The lyrics of one track.
struct Lyrics {
    QString trackTitle;             ///< as it was asked for
    QString artist;                 ///< as it was asked for
    QList<SyncedLyric> synced{};    ///< in the order of time; may be empty
    std::optional<QString> plain{}; ///< without times; none when the source had none

    bool hasSynced() const { return !synced.isEmpty(); }
    bool isEmpty() const { return synced.isEmpty() && plain.value_or(QString()).isEmpty(); }

    friend bool operator==(const Lyrics&, const Lyrics&) = default;
};

/// What a view shows in place of lines. None when there are synced lines to show.
std::optional<QString> lyricsPlaceholder(const std::optional<Lyrics>& current, bool isLoading);

/// A line as a view shows it: a note stands for an empty one.
QString shownText(const SyncedLyric& line);
