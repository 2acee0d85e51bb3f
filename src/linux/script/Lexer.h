#pragma once

#include "linux/script/Token.h"

#include <vector>

/// Cuts a script text into tokens. Comments, continued lines and the filler word "the" leave no trace; runs
/// of line ends become one.
class Lexer
{
public:
    /// In characters. Far above any script of this program.
    static constexpr qsizetype longestSource = 65'536;

    explicit Lexer(const QString& source) : _source(source) {}

    /// The tokens, the last one of kind `end`. Throws a ScriptError for a text that is too long, an
    /// unfinished text or comment, a number out of range and a character that the language does not have.
    std::vector<Token> tokens();

private:
    QChar at(qsizetype offset) const
    {
        return _position + offset < _source.size() ? _source.at(_position + offset) : QChar();
    }
    bool startsWith(QLatin1StringView text) const;

    bool skipBlank();
    void skipLine();
    void skipBlockComment();
    void skipContinuation();
    void lexLineEnd();
    void lexWord();
    void lexNumber();
    void lexText();
    void lexSymbol();
    void append(Token::Kind kind, const QString& spelling, ScriptValue value = {});
    [[noreturn]] void fail(const QString& what) const;

    const QString& _source;
    qsizetype _position = 0;
    int _line = 1;
    std::vector<Token> _tokens;
};
