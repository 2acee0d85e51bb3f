#include "lyrics/SyncedLyric.h"

#include <algorithm>

std::optional<qsizetype> activeLine(const QList<SyncedLyric>& lines, double elapsed)
{
    const auto next = std::upper_bound(lines.begin(), lines.end(), elapsed,
                                       [](double time, const SyncedLyric& line) { return time < line.time; });
    return next == lines.begin() ? std::nullopt : std::optional(next - lines.begin() - 1);
}

SungSoFar sungSoFar(const QList<SyncedLyric>& lines, double elapsed)
{
    SungSoFar sung{.line = activeLine(lines, elapsed)};
    const qsizetype following = sung.line ? *sung.line + 1 : 0;
    if (following < lines.size()) {
        sung.next = lines[following].time;
    }
    if (!sung.line || !lines[*sung.line].words) {
        return sung;
    }
    for (const LyricWord& word : *lines[*sung.line].words) {
        if (word.start <= elapsed) {
            ++sung.words;
        } else if (!sung.next || word.start < *sung.next) {
            sung.next = word.start;
        }
    }
    return sung;
}
