#pragma once

#include "platform/linux/script/Parser.h"

/// One level of nesting for as long as it lives; throws at the level below the deepest.
class Parser::Level
{
public:
    explicit Level(Parser& parser) : _parser(parser)
    {
        if (_parser._depth >= deepest) {
            throw ScriptError{ScriptError::tooDeep, QStringLiteral("The script is nested too deep.")};
        }
        ++_parser._depth;
    }
    ~Level() { --_parser._depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

private:
    Parser& _parser;
};
