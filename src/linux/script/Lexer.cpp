#include "linux/script/Lexer.h"

#include "linux/script/ScriptError.h"

#include <array>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QChar continuation(u'¬');

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == u'\r';
}
bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}
bool isWordStart(QChar character)
{
    return character.isLetter() || character == u'_';
}
bool isWordPart(QChar character)
{
    return isWordStart(character) || isDigit(character);
}

/// Longest first, so that "<=" is not read as "<".
constexpr std::array symbols = {"<="_L1, ">="_L1, "/="_L1, "'s"_L1, "("_L1, ")"_L1, "{"_L1, "}"_L1, ","_L1,
                                "&"_L1,  "*"_L1,  "/"_L1,  "+"_L1,  "-"_L1, "="_L1, "<"_L1, ">"_L1};
constexpr QStringView wideSymbols = u"≠≤≥÷×";

} // namespace

std::vector<Token> Lexer::tokens()
{
    if (_source.size() > longestSource) {
        throw ScriptError{ScriptError::tooLarge, QStringLiteral("The script is too long.")};
    }
    while (_position < _source.size()) {
        const QChar next = at(0);
        if (skipBlank()) {
            continue;
        }
        if (isLineEnd(next)) {
            lexLineEnd();
        } else if (isWordStart(next)) {
            lexWord();
        } else if (isDigit(next)) {
            lexNumber();
        } else if (next == u'"') {
            lexText();
        } else {
            lexSymbol();
        }
    }
    append(Token::Kind::lineEnd, {});
    append(Token::Kind::end, {});
    return std::move(_tokens);
}

bool Lexer::startsWith(QLatin1StringView text) const
{
    return QStringView(_source).sliced(_position).startsWith(text);
}

bool Lexer::skipBlank()
{
    if (startsWith("--"_L1) || at(0) == u'#') {
        skipLine();
    } else if (startsWith("(*"_L1)) {
        skipBlockComment();
    } else if (at(0) == continuation) {
        skipContinuation();
    } else if (at(0).isSpace() && !isLineEnd(at(0))) {
        ++_position;
    } else {
        return false;
    }
    return true;
}

void Lexer::skipLine()
{
    while (_position < _source.size() && !isLineEnd(at(0))) {
        ++_position;
    }
}

void Lexer::skipBlockComment()
{
    int depth = 0;
    do {
        if (_position >= _source.size()) {
            fail(QStringLiteral("A comment does not end"));
        }
        if (startsWith("(*"_L1)) {
            ++depth;
            ++_position;
        } else if (startsWith("*)"_L1)) {
            --depth;
            ++_position;
        } else if (at(0) == u'\n') {
            ++_line;
        }
        ++_position;
    } while (depth > 0);
}

void Lexer::skipContinuation()
{
    do {
        ++_position;
    } while (_position < _source.size() && at(0).isSpace() && !isLineEnd(at(0)));
    if (!isLineEnd(at(0))) {
        fail(QStringLiteral("A continued line goes on"));
    }
    _position += startsWith("\r\n"_L1) ? 2 : 1;
    ++_line;
}

void Lexer::lexLineEnd()
{
    append(Token::Kind::lineEnd, {});
    _position += startsWith("\r\n"_L1) ? 2 : 1;
    ++_line;
}

void Lexer::lexWord()
{
    const qsizetype start = _position;
    while (isWordPart(at(0))) {
        ++_position;
    }
    const QString word = _source.sliced(start, _position - start).toLower();
    if (word != "the"_L1) {
        append(Token::Kind::word, word);
    }
}

void Lexer::lexNumber()
{
    const qsizetype start = _position;
    const auto skipDigits = [this] {
        while (isDigit(at(0))) {
            ++_position;
        }
    };
    bool isInteger = true;
    skipDigits();
    if (at(0) == u'.' && isDigit(at(1))) {
        isInteger = false;
        ++_position;
        skipDigits();
    }
    const int signLength = at(1) == u'+' || at(1) == u'-' ? 1 : 0;
    if (at(0).toLower() == u'e' && isDigit(at(1 + signLength))) {
        isInteger = false;
        _position += 1 + signLength;
        skipDigits();
    }
    const QString digits = _source.sliced(start, _position - start);
    bool isInRange = false;
    const ScriptValue value =
        isInteger ? ScriptValue(digits.toLongLong(&isInRange)) : ScriptValue(digits.toDouble(&isInRange));
    if (!isInRange) {
        throw ScriptError{ScriptError::numberTooLarge,
                          QStringLiteral("%1 is too large.").arg(digits.left(40))};
    }
    append(Token::Kind::number, digits, value);
}

void Lexer::lexText()
{
    const int line = _line;
    QString text;
    while (true) {
        ++_position;
        if (_position >= _source.size()) {
            _line = line;
            fail(QStringLiteral("A text does not end"));
        }
        QChar next = at(0);
        if (next == u'"') {
            break;
        }
        if (next == u'\n') {
            ++_line;
        }
        if (next == u'\\') {
            constexpr QStringView letters = u"\"\\ntr";
            constexpr QStringView meanings = u"\"\\\n\t\r";
            const qsizetype which = letters.indexOf(at(1));
            if (which < 0) {
                fail(QStringLiteral("Unknown character behind a backslash"));
            }
            next = meanings.at(which);
            ++_position;
        }
        text.append(next);
    }
    ++_position;
    append(Token::Kind::text, {}, text);
}

void Lexer::lexSymbol()
{
    for (const QLatin1StringView symbol : symbols) {
        if (startsWith(symbol)) {
            _position += symbol.size();
            append(Token::Kind::symbol, symbol);
            return;
        }
    }
    if (!wideSymbols.contains(at(0))) {
        fail(QStringLiteral("Unexpected character"));
    }
    append(Token::Kind::symbol, QString(at(0)));
    ++_position;
}

void Lexer::append(Token::Kind kind, const QString& spelling, ScriptValue value)
{
    if (kind == Token::Kind::lineEnd && (_tokens.empty() || _tokens.back().kind == kind)) {
        return;
    }
    _tokens.push_back({kind, spelling, std::move(value), _line});
}

void Lexer::fail(const QString& what) const
{
    throw ScriptError{ScriptError::syntax, QStringLiteral("%1 in line %2.").arg(what).arg(_line)};
}
