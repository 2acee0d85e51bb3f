#include "LyricsMeasures.h"

#include "Table.h"

#include "lyrics/AppleMusicLyricsService.h"
#include "lyrics/LrcParser.h"

#include <QElapsedTimer>
#include <QXmlStreamReader>

#include <algorithm>
#include <functional>

namespace {

constexpr int lineCount = 10'000;

QString lrcText()
{
    QString text;
    for (int i = 0; i < lineCount; ++i) {
        text += QStringLiteral("[%1:%2.%3] And here is line %4 of a song, né 夜\n")
                    .arg(i / 60)
                    .arg(i % 60)
                    .arg(i % 100)
                    .arg(i);
    }
    return text;
}

QString ttmlText()
{
    QString text = QStringLiteral("<tt xmlns=\"http://www.w3.org/ns/ttml\"><body><div>");
    for (int i = 0; i < lineCount; ++i) {
        text += QStringLiteral("<p begin=\"%1\" end=\"%2\">").arg(i).arg(i + 1);
        for (const char* word : {"And", "here", "it", "is"}) {
            text += QStringLiteral("<span begin=\"%1.25\" end=\"%1.5\">%2</span> ")
                        .arg(i)
                        .arg(QString::fromLatin1(word));
        }
        text += QStringLiteral("</p>\n");
    }
    return text + QStringLiteral("</div></body></tt>");
}

/// Microseconds of the fastest of some runs.
double fastest(const std::function<bool()>& run)
{
    double best = -1;
    for (int i = 0; i < 15; ++i) {
        QElapsedTimer timer;
        timer.start();
        const bool isRight = run();
        const double time = static_cast<double>(timer.nsecsElapsed()) / 1e3;
        if (!isRight) {
            return -1;
        }
        best = best < 0 ? time : std::min(best, time);
    }
    return best;
}

void parserRow(const QString& what, qsizetype bytes, double time, const QString& reference,
               double referenceTime)
{
    if (time <= 0 || referenceTime <= 0) {
        Table::row(what, QStringLiteral("read wrongly"), QString());
        return;
    }
    const auto rate = [&](double microseconds) -> QString {
        return QString::number(static_cast<double>(bytes) / microseconds, 'f', 0) + QStringLiteral(" MB/s");
    };
    Table::row(what, rate(time), QString(),
               QStringLiteral("%1: %2 (time ratio %3)")
                   .arg(reference, rate(referenceTime), QString::number(time / referenceTime, 'f', 2)));
}

} // namespace

void LyricsMeasures::measureParsers()
{
    const QString lrc = lrcText();
    parserRow(QStringLiteral("reading LRC, 10,000 lines"), lrc.toUtf8().size(),
              fastest([&] { return parseSynced(lrc).size() == lineCount; }),
              QStringLiteral("splitting it into lines"),
              fastest([&] { return lrc.split(u'\n').size() == lineCount + 1; }));

    const QString ttml = ttmlText();
    parserRow(QStringLiteral("reading TTML, 10,000 lines of timed words"), ttml.toUtf8().size(), fastest([&] {
                  const auto lines = AppleMusicLyricsService::parseTTML(ttml);
                  return lines && lines->size() == lineCount;
              }),
              QStringLiteral("Qt's stream reader, nothing kept"), fastest([&] {
                  QXmlStreamReader reader(ttml);
                  while (!reader.atEnd()) {
                      reader.readNext();
                  }
                  return !reader.hasError();
              }));
}

void LyricsMeasures::measureActiveLine()
{
    const auto lines = parseSynced(lrcText());
    constexpr int searches = 2000;
    const auto nanoseconds = [&](const auto& find) {
        return fastest([&] {
                   qsizetype found = 0;
                   for (int i = 0; i < searches; ++i) {
                       found += find((i * 7919) % lineCount) ? 1 : 0;
                   }
                   return found > 0;
               }) *
               1e3 / searches;
    };
    const double search = nanoseconds([&](double elapsed) { return activeLine(lines, elapsed).has_value(); });
    const double scan = nanoseconds([&](double elapsed) {
        return std::any_of(lines.rbegin(), lines.rend(),
                           [&](const auto& line) { return line.time <= elapsed; });
    });
    Table::row(QStringLiteral("the active line among 10,000"),
               QString::number(search, 'f', 0) + QStringLiteral(" ns"), QString(),
               QStringLiteral("line by line from the last: %1 ns").arg(scan, 0, 'f', 0));
}
