#pragma once

#include "linux/script/ScriptError.h"

/// What one run of a script may cost. A step is about one expression or statement, sixteen characters of a
/// text that is made or compared, or one item of a list that is made.
class Budget
{
public:
    static constexpr qint64 steps = 4'000'000;                  ///< some tenths of a second
    static constexpr qsizetype longestText = 4LL * 1024 * 1024; ///< characters
    static constexpr qsizetype longestList = 1024LL * 1024;     ///< items, with those of the lists in it
    static constexpr int deepestList = 32;

    static constexpr qint64 failureSteps = 20; ///< what it costs to come back from an error

    /// Throws when nothing is left; no script can catch that.
    void spend(qint64 count = 1)
    {
        _left -= count;
        if (_left < 0) {
            throw ScriptError{ScriptError::tooLong, QStringLiteral("The script runs for too long.")};
        }
    }

    void spendText(qsizetype characters) { spend(characters / 16); }
    bool isExhausted() const { return _left < 0; }

private:
    qint64 _left = steps;
};
