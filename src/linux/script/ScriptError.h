#pragma once

#include <QString>

/// What a script fails with. Thrown and caught inside the interpreter alone.
struct ScriptError {
    static constexpr int syntax = -2741;
    static constexpr int cannotConvert = -1700; ///< a value of the wrong kind
    static constexpr int noSuchIndex = -1719;   ///< item 5 of a list of three
    static constexpr int noSuchObject = -1728;  ///< a property or element that is not there
    static constexpr int notUnderstood = -1708; ///< a command that the object does not know
    static constexpr int notSettable = -10006;  ///< a property that cannot be set
    static constexpr int notRunning = -600;     ///< the application does not run
    static constexpr int notPermitted = -1743;  ///< automation was refused
    static constexpr int undefinedVariable = -2753;
    static constexpr int raised = -2700; ///< by the script's own `error` statement, without a number
    static constexpr int divisionByZero = -2701;
    static constexpr int numberTooLarge = -2702;
    static constexpr int tooDeep = -2706; ///< nested deeper than any script that people write
    static constexpr int tooLarge = -108; ///< a text or a list beyond all reason
    static constexpr int tooLong = -1712; ///< still running after the steps that a script is given

    int number = 0;
    QString message;
};
