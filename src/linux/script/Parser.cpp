#include "linux/script/Parser.h"

#include "linux/script/Keywords.h"
#include "linux/script/NestingLevel.h"

using namespace Qt::Literals::StringLiterals;

ast::Script Parser::script()
{
    ast::Script script;
    script.body = block();
    if (next().kind != Token::Kind::end) {
        fail();
    }
    script.slotCount = static_cast<int>(_slots.size());
    return script;
}

bool Parser::accept(QLatin1StringView word)
{
    if (!next().is(word)) {
        return false;
    }
    ++_position;
    return true;
}

void Parser::expect(QLatin1StringView word)
{
    if (!accept(word)) {
        fail();
    }
}

void Parser::expectLineEnd()
{
    if (next().kind != Token::Kind::lineEnd) {
        fail();
    }
    ++_position;
}

std::optional<Term> Parser::nextTerm() const
{
    return termAt(std::span(_tokens).subspan(_position));
}

bool Parser::nextIsVariable() const
{
    return next().kind == Token::Kind::word && !nextTerm() && !isKeyword(next().spelling);
}

int Parser::variableSlot(const QString& name)
{
    return _slots.emplace(name, static_cast<int>(_slots.value(name, static_cast<int>(_slots.size()))))
        .value();
}

int Parser::takeVariable()
{
    if (!nextIsVariable()) {
        fail();
    }
    return variableSlot(take().spelling);
}

void Parser::fail() const
{
    const Token& token = next();
    const bool isWritten = token.kind == Token::Kind::word || token.kind == Token::Kind::symbol;
    const QString what = isWritten ? QStringLiteral("“%1”").arg(token.spelling.left(40))
                         : token.kind == Token::Kind::text   ? QStringLiteral("a text")
                         : token.kind == Token::Kind::number ? QStringLiteral("a number")
                                                             : QStringLiteral("the end");
    throw ScriptError{ScriptError::syntax,
                      QStringLiteral("Unexpected: %1 in line %2.").arg(what).arg(token.line)};
}

bool Parser::isAtBlockEnd() const
{
    return next().kind == Token::Kind::end || next().is("end"_L1) || next().is("else"_L1) ||
           next().is("on"_L1);
}

ast::Block Parser::block()
{
    ast::Block statements;
    while (!isAtBlockEnd()) {
        statements.push_back(statement());
        expectLineEnd();
    }
    return statements;
}

void Parser::endBlock(QLatin1StringView keyword)
{
    expect("end"_L1);
    accept(keyword);
}

ast::Block Parser::blockUntilEnd(QLatin1StringView keyword)
{
    expectLineEnd();
    ast::Block body = block();
    endBlock(keyword);
    return body;
}

ast::Statement Parser::statement()
{
    const NestingLevel level(_depth, deepest);
    if (accept("tell"_L1)) {
        return tell();
    }
    if (accept("if"_L1)) {
        return conditional();
    }
    if (accept("try"_L1)) {
        return attempt();
    }
    if (accept("repeat"_L1)) {
        return repeat();
    }
    if (accept("exit"_L1)) {
        return exitRepeat();
    }
    if (accept("set"_L1)) {
        return assignment();
    }
    if (accept("return"_L1)) {
        return returned();
    }
    if (accept("error"_L1)) {
        return raise();
    }
    return {ast::Evaluate{expression()}};
}

ast::Statement Parser::tell()
{
    ast::Tell tell{expression(), {}};
    if (accept("to"_L1)) {
        tell.body.push_back(statement());
    } else {
        tell.body = blockUntilEnd("tell"_L1);
    }
    return {std::move(tell)};
}

ast::Statement Parser::conditional()
{
    ast::If choice;
    ast::ExpressionPtr condition = expression();
    expect("then"_L1);
    if (next().kind != Token::Kind::lineEnd) {
        choice.branches.push_back({std::move(condition), {}});
        choice.branches.back().body.push_back(statement());
        return {std::move(choice)};
    }
    while (true) {
        expectLineEnd();
        choice.branches.push_back({std::move(condition), block()});
        const bool wasElse = choice.branches.back().condition == nullptr;
        if (wasElse || !accept("else"_L1)) {
            break;
        }
        condition = nullptr;
        if (accept("if"_L1)) {
            condition = expression();
            expect("then"_L1);
        }
    }
    endBlock("if"_L1);
    return {std::move(choice)};
}

ast::Statement Parser::attempt()
{
    ast::Try attempt;
    expectLineEnd();
    attempt.body = block();
    if (accept("on"_L1)) {
        expect("error"_L1);
        if (nextIsVariable() && !next().is("number"_L1)) {
            attempt.messageSlot = takeVariable();
        }
        if (accept("number"_L1)) {
            attempt.numberSlot = takeVariable();
        }
        expectLineEnd();
        attempt.handler = block();
    }
    endBlock("try"_L1);
    return {std::move(attempt)};
}

ast::Block Parser::loopBody()
{
    ++_loops;
    ast::Block body = blockUntilEnd("repeat"_L1);
    --_loops;
    return body;
}

ast::Statement Parser::repeat()
{
    if (accept("with"_L1)) {
        return repeatWith();
    }
    if (next().kind == Token::Kind::lineEnd) {
        return {ast::RepeatWhile{nullptr, true, loopBody()}};
    }
    const bool goal = next().is("while"_L1);
    if (goal || next().is("until"_L1)) {
        ++_position;
        ast::ExpressionPtr condition = expression();
        return {ast::RepeatWhile{std::move(condition), goal, loopBody()}};
    }
    ast::ExpressionPtr times = expression();
    expect("times"_L1);
    return {ast::RepeatTimes{std::move(times), loopBody()}};
}

ast::Statement Parser::repeatWith()
{
    const int slot = takeVariable();
    if (accept("in"_L1)) {
        ast::ExpressionPtr list = expression();
        return {ast::RepeatItems{slot, std::move(list), loopBody()}};
    }
    ast::RepeatRange range;
    range.slot = slot;
    expect("from"_L1);
    range.from = expression();
    expect("to"_L1);
    range.to = expression();
    if (accept("by"_L1)) {
        range.by = expression();
    }
    range.body = loopBody();
    return {std::move(range)};
}

ast::Statement Parser::exitRepeat()
{
    if (_loops == 0) {
        fail();
    }
    expect("repeat"_L1);
    return {ast::ExitRepeat{}};
}

ast::Statement Parser::assignment()
{
    const bool isVariable = nextIsVariable();
    ast::ExpressionPtr target = reference();
    const bool isProperty = std::holds_alternative<ast::Property>(target->data);
    const bool isPlainVariable = isVariable && std::holds_alternative<ast::Variable>(target->data);
    if (!isProperty && !isPlainVariable) {
        fail();
    }
    expect("to"_L1);
    return {ast::Set{std::move(target), expression()}};
}

ast::Statement Parser::returned()
{
    return {ast::Return{startsExpression() ? expression() : nullptr}};
}

ast::Statement Parser::raise()
{
    ast::Raise raise;
    if (startsExpression() && !next().is("number"_L1)) {
        raise.message = expression();
    }
    if (accept("number"_L1)) {
        raise.number = expression();
    }
    return {std::move(raise)};
}
