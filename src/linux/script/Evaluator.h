#pragma once

#include "linux/script/Ast.h"
#include "linux/script/TellTargets.h"

#include <functional>

/// One run of a script. Expressions are evaluated in EvaluateExpression.cpp.
class Evaluator
{
public:
    /// The application with a name, or null when it does not run.
    using Applications = std::function<std::shared_ptr<ScriptObject>(const QString& name)>;

    Evaluator(const ast::Script& script, const Applications& applications);

    /// What the script returns, or the value of the last expression that stood for itself; no value when
    /// there is neither. Throws a ScriptError.
    ScriptValue run();

private:
    enum class Flow { next, exitRepeat, returned };

    Flow execute(const ast::Block& block);
    Flow execute(const ast::Evaluate& statement);
    Flow execute(const ast::Set& statement);
    Flow execute(const ast::Tell& statement);
    Flow execute(const ast::If& statement);
    Flow execute(const ast::RepeatWhile& statement);
    Flow execute(const ast::RepeatTimes& statement);
    Flow execute(const ast::RepeatRange& statement);
    Flow execute(const ast::RepeatItems& statement);
    Flow execute(const ast::Try& statement);
    Flow execute(const ast::ExitRepeat& statement);
    Flow execute(const ast::Return& statement);
    Flow execute(const ast::Raise& statement);
    std::optional<Flow> executeLap(const ast::Block& body);
    void setProperty(const ast::Property& target, const ScriptValue& value);

    ScriptValue evaluate(const ast::ExpressionPtr& expression);
    ScriptValue evaluate(const ast::Literal& literal);
    ScriptValue evaluate(const ast::Variable& variable);
    ScriptValue evaluate(const ast::Target& target);
    ScriptValue evaluate(const ast::ListDisplay& list);
    ScriptValue evaluate(const ast::Application& application);
    ScriptValue evaluate(const ast::Property& property);
    ScriptValue evaluate(const ast::Element& element);
    ScriptValue evaluate(const ast::Count& count);
    ScriptValue evaluate(const ast::Command& command);
    ScriptValue evaluate(const ast::Unary& unary);
    ScriptValue evaluate(const ast::Binary& binary);
    ScriptValue evaluate(const ast::Coercion& coercion);

    /// Whether an expression stands for many things, so that a property of it is a list.
    static bool isPlural(const ast::Expression& expression);

    ScriptValue propertyOf(const ScriptValue& owner, const QString& name);
    ScriptList elementsOf(const ScriptValue& owner, const QString& className);
    ScriptValue select(const ScriptList& candidates, const ast::Element& element);
    ScriptList filtered(const ScriptList& candidates, const ast::Element& element);
    ScriptValue named(const ScriptList& candidates, const QString& name);
    bool matches(const ScriptValue& candidate, const ast::Expression& filter);

    const ast::Script& _script;
    const Applications& _applications;
    Budget _budget;
    std::vector<ScriptValue> _frame; ///< by slot; no value: not set yet
    TellTargets _targets{_budget};
    ScriptValue _result;
};
