#include "linux/script/Operations.h"

#include "base/Decimal.h"

#include <algorithm>
#include <cmath>
#include <compare>

namespace {

using Nothing = std::monostate;

[[noreturn]] void cannotConvert(const char* kind)
{
    throw ScriptError{ScriptError::cannotConvert,
                      QStringLiteral("Can’t make a value into type %1.").arg(QString::fromLatin1(kind))};
}

/// Adds the text of a value; false when it has none.
bool appendText(QString& text, const ScriptValue& value, Budget& budget)
{
    if (const auto* const list = std::get_if<ScriptList>(&value.data)) {
        budget.spend(list->size());
        return std::all_of(list->begin(), list->end(),
                           [&](const ScriptValue& item) { return appendText(text, item, budget); });
    }
    if (const auto* const own = std::get_if<QString>(&value.data)) {
        budget.spendText(own->size());
        text += *own;
    } else if (const auto* const integer = std::get_if<qlonglong>(&value.data)) {
        text += QString::number(*integer);
    } else if (const auto* const real = std::get_if<double>(&value.data)) {
        text += decimalText(*real);
    } else if (const auto* const truth = std::get_if<bool>(&value.data)) {
        text += boolText(*truth);
    } else if (const auto* const constant = std::get_if<ScriptConstant>(&value.data)) {
        text += constant->name;
    } else {
        return false;
    }
    if (text.size() > Budget::longestText) {
        throw ScriptError{ScriptError::tooLarge, QStringLiteral("The text is too long.")};
    }
    return true;
}

/// An integer or a real. White space around a number in a text is allowed.
ScriptValue number(const ScriptValue& value)
{
    if (std::holds_alternative<qlonglong>(value.data) || std::holds_alternative<double>(value.data)) {
        return value;
    }
    constexpr qsizetype mostDigits = 400;
    const auto* const text = std::get_if<QString>(&value.data);
    if (text == nullptr || text->size() > mostDigits) {
        cannotConvert("number");
    }
    bool isNumber = false;
    if (const qlonglong integer = text->toLongLong(&isNumber); isNumber) {
        return integer;
    }
    const double real = text->toDouble(&isNumber);
    if (!isNumber || !std::isfinite(real)) {
        cannotConvert("number");
    }
    return real;
}

double real(const ScriptValue& value)
{
    const ScriptValue numeric = number(value);
    if (const auto* const integer = std::get_if<qlonglong>(&numeric.data)) {
        return static_cast<double>(*integer);
    }
    return std::get<double>(numeric.data);
}

[[noreturn]] void numberTooLarge()
{
    throw ScriptError{ScriptError::numberTooLarge,
                      QStringLiteral("The result of a calculation is too large.")};
}

qlonglong whole(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!(value >= -limit && value < limit)) {
        numberTooLarge();
    }
    return static_cast<qlonglong>(value);
}

ScriptValue finite(double value)
{
    if (!std::isfinite(value)) {
        numberTooLarge();
    }
    return value;
}

bool isDivision(BinaryOperator operation)
{
    return operation == BinaryOperator::divide || operation == BinaryOperator::integerDivide ||
           operation == BinaryOperator::modulo;
}

/// Add, subtract, multiply, `div` and `mod` of whole numbers. The divisor is not 0.
ScriptValue integerResult(BinaryOperator operation, qlonglong left, qlonglong right)
{
    qlonglong result = 0;
    bool overflows = false;
    switch (operation) {
    case BinaryOperator::add:
        overflows = __builtin_add_overflow(left, right, &result);
        break;
    case BinaryOperator::subtract:
        overflows = __builtin_sub_overflow(left, right, &result);
        break;
    case BinaryOperator::multiply:
        overflows = __builtin_mul_overflow(left, right, &result);
        break;
    case BinaryOperator::modulo:
        result = right == -1 ? 0 : left % right;
        break;
    default: // the quotient by -1 is the negative, and the lowest number has none
        overflows = right == -1 && __builtin_sub_overflow(0, left, &result);
        result = right == -1 ? result : left / right;
        break;
    }
    if (overflows) {
        numberTooLarge();
    }
    return result;
}

ScriptValue realResult(BinaryOperator operation, double left, double right)
{
    switch (operation) {
    case BinaryOperator::add:
        return finite(left + right);
    case BinaryOperator::subtract:
        return finite(left - right);
    case BinaryOperator::multiply:
        return finite(left * right);
    case BinaryOperator::modulo:
        return finite(std::fmod(left, right));
    case BinaryOperator::integerDivide:
        return whole(std::trunc(left / right));
    default:
        return finite(left / right);
    }
}

ScriptValue arithmetic(BinaryOperator operation, const ScriptValue& left, const ScriptValue& right)
{
    const ScriptValue a = number(left);
    const ScriptValue b = number(right);
    if (isDivision(operation) && real(b) == 0) {
        throw ScriptError{ScriptError::divisionByZero, QStringLiteral("Can’t divide by zero.")};
    }
    const auto* const first = std::get_if<qlonglong>(&a.data);
    const auto* const second = std::get_if<qlonglong>(&b.data);
    if (first != nullptr && second != nullptr && operation != BinaryOperator::divide) {
        return integerResult(operation, *first, *second);
    }
    return realResult(operation, real(a), real(b));
}

QString textOrThrow(const ScriptValue& value, Budget& budget)
{
    std::optional<QString> text = operations::textOf(value, budget);
    if (!text) {
        cannotConvert("text");
    }
    return *text;
}

std::partial_ordering order(const ScriptValue& left, const ScriptValue& right, Budget& budget)
{
    if (const auto* const text = std::get_if<QString>(&left.data)) {
        const QString other = textOrThrow(right, budget);
        budget.spendText(std::min(text->size(), other.size()));
        return text->compare(other, Qt::CaseInsensitive) <=> 0;
    }
    const ScriptValue a = number(left);
    const ScriptValue b = number(right);
    if (a.data.index() == b.data.index() && std::holds_alternative<qlonglong>(a.data)) {
        return std::get<qlonglong>(a.data) <=> std::get<qlonglong>(b.data);
    }
    return real(a) <=> real(b);
}

ScriptList asList(const ScriptValue& value)
{
    const auto* const list = std::get_if<ScriptList>(&value.data);
    return list != nullptr ? *list : ScriptList{value};
}

/// A text is joined with the text of what follows; everything else, and what has no text, becomes a list.
ScriptValue concatenated(const ScriptValue& left, const ScriptValue& right, Budget& budget)
{
    if (const auto* const text = std::get_if<QString>(&left.data)) {
        QString joined = *text;
        if (appendText(joined, right, budget)) {
            budget.spendText(text->size());
            return joined;
        }
    }
    return operations::makeList(asList(left) + asList(right), budget);
}

bool containsPart(const ScriptValue& whole, const ScriptValue& part, Budget& budget)
{
    if (const auto* const list = std::get_if<ScriptList>(&whole.data)) {
        budget.spend(list->size());
        return std::any_of(list->begin(), list->end(),
                           [&](const ScriptValue& item) { return operations::equal(item, part, budget); });
    }
    const QString text = textOrThrow(whole, budget);
    budget.spend(text.size());
    return text.contains(textOrThrow(part, budget), Qt::CaseInsensitive);
}

bool beginsOrEnds(BinaryOperator operation, const ScriptValue& whole, const ScriptValue& part, Budget& budget)
{
    const QString text = textOrThrow(whole, budget);
    const QString piece = textOrThrow(part, budget);
    budget.spendText(piece.size());
    return operation == BinaryOperator::startsWith ? text.startsWith(piece, Qt::CaseInsensitive)
                                                   : text.endsWith(piece, Qt::CaseInsensitive);
}

/// How many lists are nested in one another; counts every item on the way. Throws beyond the bounds.
void measure(const ScriptList& list, int depth, qsizetype& items)
{
    items += list.size();
    if (depth > Budget::deepestList || items > Budget::longestList) {
        throw ScriptError{ScriptError::tooLarge, QStringLiteral("The list is too large.")};
    }
    for (const ScriptValue& item : list) {
        if (const auto* const inner = std::get_if<ScriptList>(&item.data)) {
            measure(*inner, depth + 1, items);
        }
    }
}

} // namespace

std::optional<QString> operations::textOf(const ScriptValue& value, Budget& budget)
{
    if (const auto* const text = std::get_if<QString>(&value.data)) {
        return *text;
    }
    QString text;
    return appendText(text, value, budget) ? std::optional(text) : std::nullopt;
}

bool operations::truth(const ScriptValue& value)
{
    const auto* const truth = std::get_if<bool>(&value.data);
    if (truth == nullptr) {
        cannotConvert("boolean");
    }
    return *truth;
}

qlonglong operations::integer(const ScriptValue& value)
{
    const ScriptValue numeric = number(value);
    if (const auto* const integer = std::get_if<qlonglong>(&numeric.data)) {
        return *integer;
    }
    return whole(std::round(std::get<double>(numeric.data)));
}

ScriptValue operations::coerced(const ScriptValue& value, ValueKind kind, Budget& budget)
{
    switch (kind) {
    case ValueKind::text:
        return textOrThrow(value, budget);
    case ValueKind::integer:
        return integer(value);
    case ValueKind::real:
        return real(value);
    case ValueKind::number:
        return number(value);
    case ValueKind::boolean:
        if (const auto* const text = std::get_if<QString>(&value.data)) {
            const bool isTrue = text->compare(boolText(true), Qt::CaseInsensitive) == 0;
            if (isTrue || text->compare(boolText(false), Qt::CaseInsensitive) == 0) {
                return isTrue;
            }
        }
        return truth(value);
    case ValueKind::list:
        break;
    }
    return makeList(asList(value), budget);
}

bool operations::equal(const ScriptValue& left, const ScriptValue& right, Budget& budget)
{
    budget.spend();
    if (left.data.index() != right.data.index()) {
        const auto isNumber = [](const ScriptValue& value) {
            return std::holds_alternative<qlonglong>(value.data) ||
                   std::holds_alternative<double>(value.data);
        };
        return isNumber(left) && isNumber(right) && real(left) == real(right);
    }
    if (const auto* const text = std::get_if<QString>(&left.data)) {
        const auto& other = std::get<QString>(right.data);
        budget.spendText(std::min(text->size(), other.size()));
        return text->compare(other, Qt::CaseInsensitive) == 0;
    }
    if (const auto* const list = std::get_if<ScriptList>(&left.data)) {
        const auto& other = std::get<ScriptList>(right.data);
        return std::equal(list->begin(), list->end(), other.begin(), other.end(),
                          [&](const ScriptValue& a, const ScriptValue& b) { return equal(a, b, budget); });
    }
    return std::visit(
        [&right]<typename T>(const T& value) {
            if constexpr (std::is_same_v<T, ScriptList>) {
                return false; // compared above
            } else {
                return value == std::get<T>(right.data);
            }
        },
        left.data);
}

ScriptValue operations::binary(BinaryOperator operation, const ScriptValue& left, const ScriptValue& right,
                               Budget& budget)
{
    switch (operation) {
    case BinaryOperator::equal:
        return equal(left, right, budget);
    case BinaryOperator::notEqual:
        return !equal(left, right, budget);
    case BinaryOperator::less:
        return std::is_lt(order(left, right, budget));
    case BinaryOperator::lessOrEqual:
        return std::is_lteq(order(left, right, budget));
    case BinaryOperator::greater:
        return std::is_gt(order(left, right, budget));
    case BinaryOperator::greaterOrEqual:
        return std::is_gteq(order(left, right, budget));
    case BinaryOperator::contains:
        return containsPart(left, right, budget);
    case BinaryOperator::doesNotContain:
        return !containsPart(left, right, budget);
    case BinaryOperator::isIn:
        return containsPart(right, left, budget);
    case BinaryOperator::isNotIn:
        return !containsPart(right, left, budget);
    case BinaryOperator::startsWith:
    case BinaryOperator::endsWith:
        return beginsOrEnds(operation, left, right, budget);
    case BinaryOperator::concatenate:
        return concatenated(left, right, budget);
    default:
        return arithmetic(operation, left, right);
    }
}

ScriptValue operations::negated(const ScriptValue& value)
{
    return arithmetic(BinaryOperator::subtract, qlonglong(0), value);
}

ScriptValue operations::makeList(ScriptList items, Budget& budget)
{
    qsizetype count = 0;
    measure(items, 1, count);
    budget.spend(count);
    return items;
}
