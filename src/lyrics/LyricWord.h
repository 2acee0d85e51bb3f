#pragma once

#include <QString>

/// A word of a line and when it is sung.
struct LyricWord {
    double start = 0; ///< seconds from the start of the track
    double end = 0;   ///< seconds from the start of the track
    QString text;     ///< without white space around it; never empty

    friend bool operator==(const LyricWord&, const LyricWord&) = default;
};
