#include "linux/script/Parser.h"

#include "linux/script/Keywords.h"
#include "linux/script/NestingLevel.h"
#include "linux/script/OperatorTable.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

struct KindName {
    QLatin1StringView word;
    ValueKind kind;
};

constexpr std::array kindNames = {
    KindName{"text"_L1, ValueKind::text},       KindName{"string"_L1, ValueKind::text},
    KindName{"integer"_L1, ValueKind::integer}, KindName{"real"_L1, ValueKind::real},
    KindName{"number"_L1, ValueKind::number},   KindName{"boolean"_L1, ValueKind::boolean},
    KindName{"list"_L1, ValueKind::list},
};

int heightOf(const ast::Expression* part)
{
    return part != nullptr ? part->height : 0;
}

} // namespace

template<typename... Parts>
ast::ExpressionPtr Parser::made(ast::Expression::Data data, const Parts*... parts) const
{
    const int height = 1 + std::max({0, heightOf(parts)...});
    if (height > deepest) {
        throw ScriptError{ScriptError::tooDeep, QStringLiteral("An expression is nested too deep.")};
    }
    return std::make_unique<ast::Expression>(ast::Expression{std::move(data), height});
}

ast::ExpressionPtr Parser::expression(int lowestPrecedence)
{
    const NestingLevel level(_depth, deepest);
    ast::ExpressionPtr left = prefixed();
    while (true) {
        if (lowestPrecedence <= precedence::as && accept("as"_L1)) {
            left = coercion(std::move(left));
            continue;
        }
        const auto found = operatorAt(std::span(_tokens).subspan(_position));
        if (!found || found->precedence < lowestPrecedence) {
            return left;
        }
        _position += found->tokens;
        ast::ExpressionPtr right = expression(found->precedence + 1);
        const auto* const a = left.get();
        const auto* const b = right.get();
        left = made(ast::Binary{found->operation, std::move(left), std::move(right)}, a, b);
    }
}

ast::ExpressionPtr Parser::prefixed()
{
    const bool isNot = accept("not"_L1);
    if (!isNot && accept("+"_L1)) {
        return expression(precedence::sign);
    }
    if (!isNot && !accept("-"_L1)) {
        return reference();
    }
    ast::ExpressionPtr operand = expression(isNot ? precedence::logicalNot : precedence::sign);
    const auto* const part = operand.get();
    using enum ast::Unary::Operator;
    return made(ast::Unary{isNot ? logicalNot : negate, std::move(operand)}, part);
}

ast::ExpressionPtr Parser::coercion(ast::ExpressionPtr operand)
{
    for (const KindName& name : kindNames) {
        if (accept(name.word)) {
            const auto* const part = operand.get();
            return made(ast::Coercion{std::move(operand), name.kind}, part);
        }
    }
    fail();
}

ast::ExpressionPtr Parser::reference()
{
    const NestingLevel level(_depth, deepest);
    ast::ExpressionPtr whole = primary();
    if (accept("of"_L1) || accept("in"_L1)) {
        whole = inContainer(std::move(whole), reference());
    }
    while (accept("'s"_L1)) {
        ast::ExpressionPtr part = primary();
        whole = inContainer(std::move(part), std::move(whole));
    }
    auto* const element = std::get_if<ast::Element>(&whole->data);
    const bool canFilter = element != nullptr && element->filter == nullptr;
    if (canFilter && (accept("whose"_L1) || accept("where"_L1))) {
        element->filter = expression();
        const auto* const filter = element->filter.get();
        const auto* const old = whole.get();
        whole = made(std::move(whole->data), old, filter);
    }
    return whole;
}

ast::ExpressionPtr Parser::inContainer(ast::ExpressionPtr part, ast::ExpressionPtr container) const
{
    const auto* const inner = part.get();
    const auto* const outer = container.get();
    if (auto* const variable = std::get_if<ast::Variable>(&part->data)) {
        // A word that no vocabulary has is a property of its container, known or not.
        return made(ast::Property{variable->name, std::move(container)}, outer);
    }
    if (auto* const property = std::get_if<ast::Property>(&part->data);
        property != nullptr && !property->container) {
        property->container = std::move(container);
    } else if (auto* const element = std::get_if<ast::Element>(&part->data);
               element != nullptr && !element->container) {
        element->container = std::move(container);
    } else {
        fail();
    }
    return made(std::move(part->data), inner, outer);
}

ast::ExpressionPtr Parser::primary()
{
    switch (next().kind) {
    case Token::Kind::number:
    case Token::Kind::text:
        return made(ast::Literal{take().value});
    case Token::Kind::word:
        return wordPrimary();
    case Token::Kind::symbol:
        break;
    default:
        fail();
    }
    if (accept("("_L1)) {
        ast::ExpressionPtr inner = expression();
        expect(")"_L1);
        return inner;
    }
    expect("{"_L1);
    return listDisplay();
}

ast::ExpressionPtr Parser::listDisplay()
{
    ast::ListDisplay list;
    int height = 0;
    while (!accept("}"_L1)) {
        if (!list.items.empty()) {
            expect(","_L1);
        }
        list.items.push_back(expression());
        height = std::max(height, list.items.back()->height);
    }
    ast::ExpressionPtr made = this->made(std::move(list));
    made->height += height;
    return made;
}

ast::ExpressionPtr Parser::wordPrimary()
{
    if (const std::optional<Term> term = nextTerm()) {
        _position += static_cast<size_t>(term->words);
        return termPrimary(*term);
    }
    if (accept("true"_L1)) {
        return made(ast::Literal{true});
    }
    if (accept("false"_L1)) {
        return made(ast::Literal{false});
    }
    if (accept("it"_L1)) {
        return made(ast::Target{});
    }
    if (accept("every"_L1)) {
        return every();
    }
    if (accept("count"_L1)) {
        return count();
    }
    if (accept("get"_L1)) {
        return expression();
    }
    if (accept("application"_L1) || accept("app"_L1)) {
        return application();
    }
    if (const std::optional<qlonglong> index = ordinalNumber(next().spelling)) {
        ++_position;
        return ordinal(*index);
    }
    if (!nextIsVariable()) {
        fail();
    }
    const QString name = take().spelling;
    return made(ast::Variable{variableSlot(name), name});
}

ast::ExpressionPtr Parser::termPrimary(const Term& term)
{
    switch (term.kind) {
    case Term::Kind::property:
        return made(ast::Property{term.name, nullptr});
    case Term::Kind::constant:
        return made(ast::Literal{ScriptConstant{term.name}});
    case Term::Kind::command:
        return command(term);
    case Term::Kind::elementClasses:
        return made(ast::Element{term.name, nullptr, nullptr, nullptr});
    case Term::Kind::elementClass:
        break;
    }
    ast::ExpressionPtr index = elementIndex();
    const auto* const part = index.get();
    return made(ast::Element{term.name, std::move(index), nullptr, nullptr}, part);
}

ast::ExpressionPtr Parser::elementIndex()
{
    const bool isSigned = accept("-"_L1);
    const bool isLiteral = next().kind == Token::Kind::number || next().kind == Token::Kind::text;
    if (!isLiteral && !next().is("("_L1) && !nextIsVariable()) {
        fail();
    }
    const NestingLevel level(_depth, deepest);
    ast::ExpressionPtr index = primary();
    if (!isSigned) {
        return index;
    }
    const auto* const part = index.get();
    return made(ast::Unary{ast::Unary::Operator::negate, std::move(index)}, part);
}

ast::ExpressionPtr Parser::every()
{
    const std::optional<Term> term = nextTerm();
    if (!term || (term->kind != Term::Kind::elementClass && term->kind != Term::Kind::elementClasses)) {
        fail();
    }
    _position += static_cast<size_t>(term->words);
    return made(ast::Element{term->name, nullptr, nullptr, nullptr});
}

ast::ExpressionPtr Parser::ordinal(qlonglong index)
{
    ast::ExpressionPtr element = every();
    std::get<ast::Element>(element->data).index = made(ast::Literal{index});
    ++element->height;
    return element;
}

ast::ExpressionPtr Parser::count()
{
    accept("of"_L1);
    ast::ExpressionPtr operand = reference();
    const auto* const part = operand.get();
    return made(ast::Count{std::move(operand)}, part);
}

ast::ExpressionPtr Parser::application()
{
    if (next().kind != Token::Kind::text) {
        fail();
    }
    return made(ast::Application{std::get<QString>(take().value.data)});
}

ast::ExpressionPtr Parser::command(const Term& term)
{
    ast::Command command{term.name, nullptr, {}};
    if (startsExpression()) {
        command.direct = expression();
    }
    const auto* const direct = command.direct.get();
    const ast::Expression* parameter = nullptr;
    if (accept("using"_L1)) {
        command.parameters.emplace_back(QStringLiteral("using"), expression());
        parameter = command.parameters.back().second.get();
    }
    return made(std::move(command), direct, parameter);
}

bool Parser::startsExpression() const
{
    const Token& token = next();
    if (token.kind == Token::Kind::word) {
        constexpr std::array starters = {"true"_L1, "false"_L1, "it"_L1,  "every"_L1,      "count"_L1,
                                         "get"_L1,  "not"_L1,   "app"_L1, "application"_L1};
        return nextTerm() || !isKeyword(token.spelling) || ordinalNumber(token.spelling) ||
               std::any_of(starters.begin(), starters.end(), [&](auto word) { return token.is(word); });
    }
    return token.kind == Token::Kind::number || token.kind == Token::Kind::text || token.is("("_L1) ||
           token.is("{"_L1) || token.is("-"_L1);
}
