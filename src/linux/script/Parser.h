#pragma once

#include "linux/script/Ast.h"
#include "linux/script/Terminology.h"

#include <QHash>

#include <span>

/// Makes a script of tokens. Expressions are parsed in ParseExpression.cpp.
class Parser
{
public:
    /// Statements, brackets and operators within one another.
    static constexpr int deepest = 100;

    explicit Parser(std::vector<Token> tokens) : _tokens(std::move(tokens)) {}

    /// Throws a ScriptError that names the line for a text that is not in the language or nested too deep.
    ast::Script script();

private:
    const Token& next() const { return _tokens[_position]; }
    const Token& take() { return _tokens[_position++]; }
    bool accept(QLatin1StringView word);
    void expect(QLatin1StringView word);
    void expectLineEnd();
    std::optional<Term> nextTerm() const;
    bool nextIsVariable() const;
    int variableSlot(const QString& name);
    int takeVariable();
    [[noreturn]] void fail() const;

    ast::Block block();
    bool isAtBlockEnd() const;
    void endBlock(QLatin1StringView keyword);
    ast::Block blockUntilEnd(QLatin1StringView keyword);
    ast::Statement statement();
    ast::Statement tell();
    ast::Statement conditional();
    ast::Statement attempt();
    ast::Statement repeat();
    ast::Statement repeatWith();
    ast::Block loopBody();
    ast::Statement exitRepeat();
    ast::Statement assignment();
    ast::Statement returned();
    ast::Statement raise();

    ast::ExpressionPtr expression(int lowestPrecedence = 0);
    ast::ExpressionPtr prefixed();
    ast::ExpressionPtr coercion(ast::ExpressionPtr operand);
    ast::ExpressionPtr reference();
    ast::ExpressionPtr inContainer(ast::ExpressionPtr part, ast::ExpressionPtr container) const;
    ast::ExpressionPtr primary();
    ast::ExpressionPtr wordPrimary();
    ast::ExpressionPtr termPrimary(const Term& term);
    ast::ExpressionPtr listDisplay();
    ast::ExpressionPtr elementIndex();
    ast::ExpressionPtr every();
    ast::ExpressionPtr ordinal(qlonglong index);
    ast::ExpressionPtr command(const Term& term);
    ast::ExpressionPtr count();
    ast::ExpressionPtr application();
    bool startsExpression() const;

    /// The expression with its height reckoned from its parts.
    template<typename... Parts>
    ast::ExpressionPtr made(ast::Expression::Data data, const Parts*... parts) const;

    std::vector<Token> _tokens;
    size_t _position = 0;
    int _depth = 0;
    int _loops = 0;
    QHash<QString, int> _slots;
};
