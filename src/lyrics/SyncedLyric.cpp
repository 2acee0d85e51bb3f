#include "lyrics/SyncedLyric.h"

#include <algorithm>

std::optional<qsizetype> activeLine(const QList<SyncedLyric>& lines, double elapsed)
{
    const auto next = std::upper_bound(lines.begin(), lines.end(), elapsed,
                                       [](double time, const SyncedLyric& line) { return time < line.time; });
    return next == lines.begin() ? std::nullopt : std::optional(next - lines.begin() - 1);
}
