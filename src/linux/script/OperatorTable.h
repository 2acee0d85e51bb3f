#pragma once

#include "linux/script/Operations.h"
#include "linux/script/Token.h"

#include <span>

/// How tightly operators bind, the loosest first. Between the binary ones stand `not`, `as` and the sign.
namespace precedence {
constexpr int logicalOr = 1;
constexpr int logicalAnd = 2;
constexpr int logicalNot = 3;
constexpr int equality = 4;
constexpr int order = 5;
constexpr int as = 6;
constexpr int join = 7;
constexpr int sum = 8;
constexpr int product = 9;
constexpr int sign = 10;
} // namespace precedence

struct FoundOperator {
    BinaryOperator operation = BinaryOperator::add;
    int precedence = 0;
    size_t tokens = 0; ///< how many it is written with
};

/// The binary operator that the tokens begin with. The tokens end with one of kind `end`.
std::optional<FoundOperator> operatorAt(std::span<const Token> tokens);
