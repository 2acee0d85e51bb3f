#include "linux/script/OperatorTable.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Operator {
    QLatin1StringView phrase;
    BinaryOperator operation;
    int precedence;
};

using enum BinaryOperator;

/// A phrase stands before the phrases that it begins with.
constexpr std::array operators = {
    Operator{"or"_L1, logicalOr, precedence::logicalOr},
    Operator{"and"_L1, logicalAnd, precedence::logicalAnd},
    Operator{"is not equal to"_L1, notEqual, precedence::equality},
    Operator{"is not equal"_L1, notEqual, precedence::equality},
    Operator{"is not in"_L1, isNotIn, precedence::equality},
    Operator{"is not greater than"_L1, lessOrEqual, precedence::order},
    Operator{"is not less than"_L1, greaterOrEqual, precedence::order},
    Operator{"is not"_L1, notEqual, precedence::equality},
    Operator{"does not equal"_L1, notEqual, precedence::equality},
    Operator{"does not contain"_L1, doesNotContain, precedence::equality},
    Operator{"/="_L1, notEqual, precedence::equality},
    Operator{"is greater than or equal to"_L1, greaterOrEqual, precedence::order},
    Operator{"is greater than"_L1, greater, precedence::order},
    Operator{"is less than or equal to"_L1, lessOrEqual, precedence::order},
    Operator{"is less than"_L1, less, precedence::order},
    Operator{"is equal to"_L1, equal, precedence::equality},
    Operator{"is equal"_L1, equal, precedence::equality},
    Operator{"is in"_L1, isIn, precedence::equality},
    Operator{"is"_L1, equal, precedence::equality},
    Operator{"equals"_L1, equal, precedence::equality},
    Operator{"="_L1, equal, precedence::equality},
    Operator{"contains"_L1, contains, precedence::equality},
    Operator{"starts with"_L1, startsWith, precedence::equality},
    Operator{"begins with"_L1, startsWith, precedence::equality},
    Operator{"ends with"_L1, endsWith, precedence::equality},
    Operator{"<="_L1, lessOrEqual, precedence::order},
    Operator{">="_L1, greaterOrEqual, precedence::order},
    Operator{"<"_L1, less, precedence::order},
    Operator{">"_L1, greater, precedence::order},
    Operator{"&"_L1, concatenate, precedence::join},
    Operator{"+"_L1, add, precedence::sum},
    Operator{"-"_L1, subtract, precedence::sum},
    Operator{"*"_L1, multiply, precedence::product},
    Operator{"/"_L1, divide, precedence::product},
    Operator{"div"_L1, integerDivide, precedence::product},
    Operator{"mod"_L1, modulo, precedence::product},
};

/// The operators that are not in Latin-1 have a twin that is.
QLatin1StringView plain(const QString& symbol)
{
    if (symbol.size() == 1) {
        switch (symbol.front().unicode()) {
        case u'≠':
            return "/="_L1;
        case u'≤':
            return "<="_L1;
        case u'≥':
            return ">="_L1;
        case u'÷':
            return "/"_L1;
        case u'×':
            return "*"_L1;
        default:
            break;
        }
    }
    return {};
}

/// How many tokens the phrase takes, 0 when they are not there.
size_t matched(QLatin1StringView phrase, std::span<const Token> tokens)
{
    size_t count = 0;
    for (const QLatin1StringView word : phrase.tokenize(u' ')) {
        if (!tokens[count].is(word) && plain(tokens[count].spelling) != word) {
            return 0;
        }
        ++count; // the last token is neither word nor symbol, so this stays inside
    }
    return count;
}

} // namespace

std::optional<FoundOperator> operatorAt(std::span<const Token> tokens)
{
    for (const Operator& candidate : operators) {
        if (const size_t count = matched(candidate.phrase, tokens); count > 0) {
            return FoundOperator{candidate.operation, candidate.precedence, count};
        }
    }
    return std::nullopt;
}
