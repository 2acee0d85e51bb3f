#pragma once

#include "linux/script/Operations.h"

#include <memory>
#include <optional>
#include <variant>
#include <vector>

/// A script as the parser leaves it. Names are in lower case; a slot is a variable's place in the frame.
namespace ast {

struct Expression;
struct Statement;
using ExpressionPtr = std::unique_ptr<Expression>;
using Block = std::vector<Statement>;

struct Literal {
    ScriptValue value;
};

struct Variable {
    int slot = 0;
    QString name;
};

/// `it`: what the script is talking to.
struct Target {
};

struct ListDisplay {
    std::vector<ExpressionPtr> items;
};

/// `application "Music"`
struct Application {
    QString name;
};

/// `name of …`; without a container a property of whatever the script is talking to.
struct Property {
    QString name;
    ExpressionPtr container;
};

/// `every track of …`, `item 3 of …`, `first process whose …`. Every one that fits unless there is an index.
struct Element {
    QString className;
    ExpressionPtr index; ///< a number from 1, or from the end when negative, or a name
    ExpressionPtr filter;
    ExpressionPtr container;
};

struct Count {
    ExpressionPtr operand;
};

struct Command {
    QString name;
    ExpressionPtr direct;
    std::vector<std::pair<QString, ExpressionPtr>> parameters;
};

struct Unary {
    enum class Operator { negate, logicalNot };
    Operator operation = Operator::negate;
    ExpressionPtr operand;
};

struct Binary {
    BinaryOperator operation = BinaryOperator::add;
    ExpressionPtr left;
    ExpressionPtr right;
};

struct Coercion {
    ExpressionPtr operand;
    ValueKind kind = ValueKind::text;
};

struct Expression {
    using Data = std::variant<Literal, Variable, Target, ListDisplay, Application, Property, Element, Count,
                              Command, Unary, Binary, Coercion>;
    Data data;
    int height = 1; ///< expressions on the longest way down; bounds every walk over the tree
};

struct Evaluate {
    ExpressionPtr expression;
};

struct Set {
    ExpressionPtr target; ///< a variable or a property
    ExpressionPtr value;
};

struct Tell {
    ExpressionPtr target;
    Block body;
};

struct If {
    struct Branch {
        ExpressionPtr condition; ///< none for `else`
        Block body;
    };
    std::vector<Branch> branches;
};

/// `repeat`, `repeat while …`, `repeat until …`
struct RepeatWhile {
    ExpressionPtr condition; ///< none: for ever
    bool goal = true;        ///< the loop runs while the condition is this
    Block body;
};

struct RepeatTimes {
    ExpressionPtr times;
    Block body;
};

struct RepeatRange {
    int slot = 0;
    ExpressionPtr from;
    ExpressionPtr to;
    ExpressionPtr by; ///< none: 1
    Block body;
};

struct RepeatItems {
    int slot = 0;
    ExpressionPtr list;
    Block body;
};

struct Try {
    Block body;
    Block handler;
    std::optional<int> messageSlot;
    std::optional<int> numberSlot;
};

struct ExitRepeat {
};

struct Return {
    ExpressionPtr value; ///< none: nothing is returned
};

struct Raise {
    ExpressionPtr message;
    ExpressionPtr number;
};

struct Statement {
    using Data = std::variant<Evaluate, Set, Tell, If, RepeatWhile, RepeatTimes, RepeatRange, RepeatItems,
                              Try, ExitRepeat, Return, Raise>;
    Data data;
};

struct Script {
    Block body;
    int slotCount = 0; ///< how many variables it names
};

} // namespace ast
