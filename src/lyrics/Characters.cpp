#include "lyrics/Characters.h"

#include <QTextBoundaryFinder>

namespace {

/// From here on there are characters that join the one before them or behind them; below only a line feed
/// does, behind a carriage return.
constexpr char16_t firstJoining = 0x300;

bool isBoundary(QStringView text, qsizetype index)
{
    if (index <= 0 || index >= text.size()) {
        return true;
    }
    const QChar before = text[index - 1];
    const QChar behind = text[index];
    if (before < firstJoining && behind < firstJoining) {
        return before != u'\r' || behind != u'\n';
    }
    // One side is ASCII, so that a code point on the other side decides.
    const qsizetype start = std::max<qsizetype>(index - 2, 0);
    QTextBoundaryFinder finder(
        QTextBoundaryFinder::Grapheme,
        text.sliced(start).first(std::min<qsizetype>(text.size() - start, 4)).toString());
    finder.setPosition(index - start);
    return finder.isAtBoundary();
}

bool isSpace(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

template<typename Predicate>
QStringView trim(QStringView text, Predicate isDropped)
{
    while (!text.isEmpty() && isDropped(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isDropped(text.back())) {
        text.chop(1);
    }
    return text;
}

} // namespace

namespace Characters {

qsizetype count(QStringView text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.toString());
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0) {
        ++count;
    }
    return count;
}

bool isWhole(QStringView text, qsizetype index)
{
    return isBoundary(text, index) && isBoundary(text, index + 1);
}

qsizetype indexOf(QStringView text, QChar wanted, qsizetype from)
{
    qsizetype index = text.indexOf(wanted, from);
    while (index >= 0 && !isWhole(text, index)) {
        index = text.indexOf(wanted, index + 1);
    }
    return index;
}

QList<QStringView> split(QStringView text, QChar separator)
{
    QList<QStringView> pieces;
    qsizetype start = 0;
    while (start <= text.size()) {
        const qsizetype found = indexOf(text, separator, start);
        const qsizetype end = found < 0 ? text.size() : found;
        if (end > start) {
            pieces << text.sliced(start, end - start);
        }
        start = end + 1;
    }
    return pieces;
}

QStringView trimSpaces(QStringView text)
{
    return trim(text, isSpace);
}

QStringView trimSpacesAndLineBreaks(QStringView text)
{
    return trim(text, [](QChar character) { return character.isSpace(); });
}

} // namespace Characters
