#include "lyrics/LrcParser.h"

#include "base/Decimal.h"
#include "lyrics/Characters.h"

#include <algorithm>
#include <cmath>

namespace {

/// "50" of "12.50" as 0.5. A fraction that is no number counts as none.
double fraction(QStringView digits)
{
    const auto value = readInteger(digits);
    if (!value) {
        return 0;
    }
    const bool hasSign = !digits.front().isDigit();
    return static_cast<double>(*value) /
           std::pow(10.0, static_cast<double>(digits.size() - (hasSign ? 1 : 0)));
}

/// Seconds of what stands between the brackets of a tag; none when it is no time.
std::optional<double> tagTime(QStringView tag)
{
    const auto parts = Characters::split(tag, u':');
    if (parts.size() != 2) {
        return std::nullopt;
    }
    const auto minutes = readInteger(parts[0]);
    const auto pieces = Characters::split(parts[1], u'.');
    const auto seconds = pieces.isEmpty() ? std::nullopt : readInteger(pieces[0]);
    qint64 whole = 0;
    if (!minutes || !seconds || __builtin_mul_overflow(*minutes, 60, &whole) ||
        __builtin_add_overflow(whole, *seconds, &whole)) {
        return std::nullopt;
    }
    return static_cast<double>(whole) + (pieces.size() > 1 ? fraction(pieces[1]) : 0);
}

/// Takes a time tag off the front of a line.
std::optional<double> takeTag(QStringView& line)
{
    if (!line.startsWith(u'[') || !Characters::isWhole(line, 0)) {
        return std::nullopt;
    }
    const qsizetype end = Characters::indexOf(line, u']', 1);
    const auto time = end < 0 ? std::nullopt : tagTime(line.sliced(1, end - 1));
    if (time) {
        line = line.sliced(end + 1);
    }
    return time;
}

} // namespace

QList<SyncedLyric> parseSynced(const QString& lrc)
{
    QList<SyncedLyric> result;
    for (QStringView line : Characters::split(lrc, u'\n')) {
        QList<double> times;
        while (const auto time = takeTag(line)) {
            times << *time;
        }
        if (times.isEmpty()) {
            continue;
        }
        const QString text = Characters::trimSpaces(line).toString();
        for (const double time : times) {
            result.append({.time = time, .text = text});
        }
    }
    std::stable_sort(result.begin(), result.end(),
                     [](const SyncedLyric& a, const SyncedLyric& b) { return a.time < b.time; });
    return result;
}
