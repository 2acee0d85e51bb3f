#pragma once

#include "linux/script/ScriptError.h"

/// One level of nesting for as long as it lives; throws at the level below the deepest.
class NestingLevel
{
public:
    NestingLevel(int& depth, int deepest) : _depth(depth)
    {
        if (_depth >= deepest) {
            throw ScriptError{ScriptError::tooDeep, QStringLiteral("The script is nested too deep.")};
        }
        ++_depth;
    }
    ~NestingLevel() { --_depth; }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;

private:
    int& _depth;
};
