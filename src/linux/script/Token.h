#pragma once

#include "linux/script/ScriptValue.h"

/// The smallest piece of a script text.
struct Token {
    enum class Kind { word, symbol, number, text, lineEnd, end };

    Kind kind = Kind::end;
    QString spelling;  ///< of a word in lower case, of a symbol as it stands
    ScriptValue value; ///< of a number or a text
    int line = 1;      ///< 1-based

    bool is(QLatin1StringView word) const
    {
        return (kind == Kind::word || kind == Kind::symbol) && spelling == word;
    }
};
