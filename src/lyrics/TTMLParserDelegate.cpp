#include "lyrics/TTMLParserDelegate.h"

#include "base/Decimal.h"
#include "lyrics/Characters.h"

#include <utility>

namespace {

constexpr QStringView lineElement = u"p";
constexpr QStringView wordElement = u"span";

} // namespace

void TTMLParserDelegate::startElement(QStringView name, QStringView begin, QStringView end)
{
    const auto start = parseTime(begin);
    if (name == lineElement) {
        _inLine = true;
        _lineStart = start.value_or(0);
        _wordsThisLine.clear();
        _lineTextBuffer.clear();
    } else if (const auto stop = parseTime(end); name == wordElement && start && stop) {
        _inWord = true;
        _wordStart = *start;
        _wordEnd = *stop;
        _wordTextBuffer.clear();
    }
}

void TTMLParserDelegate::characters(QStringView text)
{
    if (_inWord) {
        _wordTextBuffer += text;
    } else if (_inLine) {
        _lineTextBuffer += text;
    }
}

void TTMLParserDelegate::endElement(QStringView name)
{
    if (name == lineElement) {
        endLine();
    } else if (name == wordElement && _inWord) {
        endWord();
    }
}

void TTMLParserDelegate::endWord()
{
    const QString text = Characters::trimSpacesAndLineBreaks(_wordTextBuffer).toString();
    if (!text.isEmpty()) {
        _wordsThisLine.append({.start = _wordStart, .end = _wordEnd, .text = text});
    }
    _lineTextBuffer += _wordTextBuffer;
    _inWord = false;
}

void TTMLParserDelegate::endLine()
{
    _inLine = false;
    // Taken, so that lines within lines, which no sound document has, cannot multiply what they hold.
    const QString buffer = std::exchange(_lineTextBuffer, {}).replace(u'\n', u' ');
    const QList<LyricWord> words = std::exchange(_wordsThisLine, {});
    const QString text = Characters::trimSpaces(buffer).toString();
    if (text.isEmpty() && words.isEmpty()) {
        return;
    }
    _lines.append(
        {.time = _lineStart, .text = text, .words = words.isEmpty() ? std::nullopt : std::optional(words)});
}

std::optional<double> TTMLParserDelegate::parseTime(QStringView text)
{
    if (text.endsWith(u's')) {
        text.chop(1);
    }
    const auto pieces = text.split(u':', Qt::SkipEmptyParts);
    if (pieces.size() == 1) {
        return readDecimal(text);
    }
    if (pieces.size() != 2 && pieces.size() != 3) {
        return std::nullopt;
    }
    const auto hours = pieces.size() == 3 ? readInteger(pieces.first()) : 0;
    const auto minutes = readInteger(pieces[pieces.size() - 2]);
    const auto seconds = readDecimal(pieces.last());
    if (!hours || !minutes || !seconds) {
        return std::nullopt;
    }
    return static_cast<double>(*hours) * 3600 + static_cast<double>(*minutes) * 60 + *seconds;
}
