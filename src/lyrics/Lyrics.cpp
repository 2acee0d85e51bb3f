#include "lyrics/Lyrics.h"

std::optional<QString> lyricsPlaceholder(const std::optional<Lyrics>& current, bool isLoading)
{
    if (isLoading) {
        return QStringLiteral("Loading lyrics…");
    }
    if (!current || current->isEmpty()) {
        return QStringLiteral("No lyrics available");
    }
    if (!current->hasSynced()) {
        return QStringLiteral("Lyrics not synced");
    }
    return std::nullopt;
}

QString shownText(const SyncedLyric& line)
{
    return line.text.isEmpty() ? QStringLiteral("♪") : line.text;
}
