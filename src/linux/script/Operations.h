#pragma once

#include "linux/script/Budget.h"
#include "linux/script/ScriptValue.h"

#include <optional>

enum class ValueKind { text, integer, real, number, boolean, list };

enum class BinaryOperator {
    logicalOr,
    logicalAnd,
    equal,
    notEqual,
    less,
    lessOrEqual,
    greater,
    greaterOrEqual,
    contains,
    doesNotContain,
    isIn,
    isNotIn,
    startsWith,
    endsWith,
    concatenate,
    add,
    subtract,
    multiply,
    divide,
    integerDivide,
    modulo,
};

/// The arithmetic of script values. Everything that can fail throws a ScriptError.
namespace operations {

/// Text form: numbers with ".", whatever the locale, reals always with a fraction; a list is its items in one
/// go. Nothing for an object, for no value and for a list that holds one of these.
std::optional<QString> textOf(const ScriptValue& value, Budget& budget);

/// A condition's value; an error for anything but a boolean.
bool truth(const ScriptValue& value);

/// A whole number; a real is rounded, a text read.
qlonglong integer(const ScriptValue& value);

/// The value as another kind.
ScriptValue coerced(const ScriptValue& value, ValueKind kind, Budget& budget);

/// Equal values: numbers by value, texts without regard to case, lists item by item.
bool equal(const ScriptValue& left, const ScriptValue& right, Budget& budget);

/// Every operator but `and` and `or`, which need not look at their right side.
ScriptValue binary(BinaryOperator operation, const ScriptValue& left, const ScriptValue& right,
                   Budget& budget);

ScriptValue negated(const ScriptValue& value);

/// A list within the bounds of the budget, or an error.
ScriptValue makeList(ScriptList items, Budget& budget);

} // namespace operations
