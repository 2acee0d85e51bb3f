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

/// How far a text is sung.
struct SungSoFar {
    std::optional<qsizetype> line{}; ///< the index of the line that is sung; none before the first
    qsizetype words = 0;             ///< of that line that have begun, of those with times
    std::optional<double> next{};    ///< when either changes, in seconds from the start of the track

    friend bool operator==(const SungSoFar&, const SungSoFar&) = default;
};

/// How far the lines, in the order of time, are sung at `elapsed` seconds.
SungSoFar sungSoFar(const QList<SyncedLyric>& lines, double elapsed);

/// The index of the line that is sung at `elapsed` seconds: the last one that has begun, and of lines that
/// begin at once the last. None before the first line. `lines` is in the order of time.
std::optional<qsizetype> activeLine(const QList<SyncedLyric>& lines, double elapsed);
