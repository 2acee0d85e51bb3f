#pragma once

#include <QList>
#include <QString>

#include <optional>

/// A word of a line and when it is sung.
struct LyricWord {
    double start = 0; ///< seconds from the start of the track
    double end = 0;   ///< seconds from the start of the track
    QString text;     ///< without white space around it; never empty

    friend bool operator==(const LyricWord&, const LyricWord&) = default;
};

/// A line of lyrics and when it begins.
struct SyncedLyric {
    double time = 0;                         ///< seconds from the start of the track
    QString text;                            ///< without white space around it; empty for an instrumental gap
    std::optional<QList<LyricWord>> words{}; ///< only where each word has its time; then never an empty list

    friend bool operator==(const SyncedLyric&, const SyncedLyric&) = default;
};

/// The index of the line that is sung at `elapsed` seconds: the last one that has begun, and of lines that
/// begin at once the last. None before the first line. `lines` is in the order of time.
std::optional<qsizetype> activeLine(const QList<SyncedLyric>& lines, double elapsed);
