#include "fuzz/Properties.h"

#include "lyrics/AppleMusicLyricsService.h"
#include "lyrics/LrcParser.h"

#include <algorithm>
#include <cmath>

namespace {

bool isTrimmed(const QString& text)
{
    const auto isBlank = [](QChar end) { return end == u' ' || end == u'\t'; };
    return text.isEmpty() || !(isBlank(text.front()) || isBlank(text.back()));
}

bool isSound(const LyricWord& word)
{
    return std::isfinite(word.start) && std::isfinite(word.end) && !word.text.isEmpty() &&
           word.text == word.text.trimmed();
}

} // namespace

bool Properties::holdForLrc(const QByteArray& input)
{
    const QString text = QString::fromUtf8(input);
    const auto lines = parseSynced(text);
    const auto isEarlier = [](const SyncedLyric& a, const SyncedLyric& b) { return a.time < b.time; };
    return lines.size() <= text.count(u'[') && std::is_sorted(lines.begin(), lines.end(), isEarlier) &&
           std::all_of(lines.begin(), lines.end(), [&](const SyncedLyric& line) {
               return std::isfinite(line.time) && isTrimmed(line.text) && text.contains(line.text) &&
                      !line.words && activeLine(lines, line.time).has_value();
           });
}

bool Properties::holdForTTML(const QByteArray& input)
{
    const auto lines = AppleMusicLyricsService::parseTTML(QString::fromUtf8(input));
    return !lines ||
           (!lines->isEmpty() && std::all_of(lines->begin(), lines->end(), [](const SyncedLyric& line) {
               const auto words = line.words.value_or(QList<LyricWord>());
               return std::isfinite(line.time) && isTrimmed(line.text) && !line.text.contains(u'\n') &&
                      line.words.has_value() == !words.isEmpty() &&
                      !(line.text.isEmpty() && words.isEmpty()) &&
                      std::all_of(words.begin(), words.end(), isSound);
           }));
}
