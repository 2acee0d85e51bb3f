#pragma once

#include "linux/script/Token.h"

#include <optional>
#include <span>

/// A word, or a few, that applications lend to the language.
struct Term {
    enum class Kind { property, elementClass, elementClasses, command, constant };

    Kind kind = Kind::property;
    QString name; ///< in lower case; of a class in the singular, also when the plural was written
    int words = 1;
};

/// The longest term that the tokens begin with, or nothing: then the first word is a variable's.
std::optional<Term> termAt(std::span<const Token> tokens);
