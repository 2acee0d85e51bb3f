#include "linux/script/Evaluator.h"

Evaluator::Evaluator(const ast::Script& script, const Applications& applications)
    : _script(script)
    , _applications(applications)
    , _frame(static_cast<size_t>(script.slotCount))
{
}

ScriptValue Evaluator::run()
{
    execute(_script.body);
    return std::move(_result);
}

Evaluator::Flow Evaluator::execute(const ast::Block& block)
{
    for (const ast::Statement& statement : block) {
        _budget.spend();
        const Flow flow = std::visit([this](const auto& node) { return execute(node); }, statement.data);
        if (flow != Flow::next) {
            return flow;
        }
    }
    return Flow::next;
}

Evaluator::Flow Evaluator::execute(const ast::Evaluate& statement)
{
    _result = evaluate(statement.expression);
    return Flow::next;
}

Evaluator::Flow Evaluator::execute(const ast::Set& statement)
{
    ScriptValue value = evaluate(statement.value);
    if (const auto* const variable = std::get_if<ast::Variable>(&statement.target->data)) {
        _frame[static_cast<size_t>(variable->slot)] = std::move(value);
    } else {
        setProperty(std::get<ast::Property>(statement.target->data), value);
    }
    return Flow::next;
}

void Evaluator::setProperty(const ast::Property& target, const ScriptValue& value)
{
    if (!target.container) {
        _targets.ask({ScriptError::notSettable, ScriptError::noSuchObject},
                     [&](ScriptObject& object) { object.setProperty(target.name, value); });
        return;
    }
    const ScriptValue owner = evaluate(target.container);
    const auto* const owners = std::get_if<ScriptList>(&owner.data);
    if (owners == nullptr || !isPlural(*target.container)) {
        scriptObject(owner)->setProperty(target.name, value);
        return;
    }
    for (const ScriptValue& each : *owners) {
        _budget.spend();
        scriptObject(each)->setProperty(target.name, value);
    }
}

Evaluator::Flow Evaluator::execute(const ast::Tell& statement)
{
    const TellTargets::Scope scope(_targets, evaluate(statement.target));
    return execute(statement.body);
}

Evaluator::Flow Evaluator::execute(const ast::If& statement)
{
    for (const ast::If::Branch& branch : statement.branches) {
        if (!branch.condition || operations::truth(evaluate(branch.condition))) {
            return execute(branch.body);
        }
    }
    return Flow::next;
}

/// None when the loop goes on, else how control leaves it.
std::optional<Evaluator::Flow> Evaluator::executeLap(const ast::Block& body)
{
    _budget.spend();
    const Flow flow = execute(body);
    return flow == Flow::next         ? std::nullopt
           : flow == Flow::exitRepeat ? std::optional(Flow::next)
                                      : std::optional(flow);
}

Evaluator::Flow Evaluator::execute(const ast::RepeatWhile& statement)
{
    while (!statement.condition || operations::truth(evaluate(statement.condition)) == statement.goal) {
        if (const std::optional<Flow> flow = executeLap(statement.body)) {
            return *flow;
        }
    }
    return Flow::next;
}

Evaluator::Flow Evaluator::execute(const ast::RepeatTimes& statement)
{
    for (qlonglong left = operations::integer(evaluate(statement.times)); left > 0; --left) {
        if (const std::optional<Flow> flow = executeLap(statement.body)) {
            return *flow;
        }
    }
    return Flow::next;
}

Evaluator::Flow Evaluator::execute(const ast::RepeatRange& statement)
{
    const qlonglong from = operations::integer(evaluate(statement.from));
    const qlonglong to = operations::integer(evaluate(statement.to));
    const qlonglong by = statement.by ? operations::integer(evaluate(statement.by)) : 1;
    if (by == 0) {
        throw ScriptError{ScriptError::divisionByZero, QStringLiteral("A loop can’t go on by zero.")};
    }
    qlonglong i = from;
    bool overflows = false;
    while (!overflows && (by > 0 ? i <= to : i >= to)) {
        _frame[static_cast<size_t>(statement.slot)] = i;
        if (const std::optional<Flow> flow = executeLap(statement.body)) {
            return *flow;
        }
        overflows = __builtin_add_overflow(i, by, &i);
    }
    return Flow::next;
}

Evaluator::Flow Evaluator::execute(const ast::RepeatItems& statement)
{
    const ScriptValue value = evaluate(statement.list);
    const auto* const list = std::get_if<ScriptList>(&value.data);
    if (list == nullptr) {
        throw ScriptError{ScriptError::cannotConvert, QStringLiteral("Can’t repeat with what is no list.")};
    }
    for (const ScriptValue& item : *list) {
        _frame[static_cast<size_t>(statement.slot)] = item;
        if (const std::optional<Flow> flow = executeLap(statement.body)) {
            return *flow;
        }
    }
    return Flow::next;
}

Evaluator::Flow Evaluator::execute(const ast::Try& statement)
{
    try {
        return execute(statement.body);
    } catch (const ScriptError& error) {
        if (_budget.isExhausted()) {
            throw;
        }
        _budget.spend(Budget::failureSteps);
        if (statement.messageSlot) {
            _frame[static_cast<size_t>(*statement.messageSlot)] = error.message;
        }
        if (statement.numberSlot) {
            _frame[static_cast<size_t>(*statement.numberSlot)] = qlonglong(error.number);
        }
    }
    return execute(statement.handler);
}

Evaluator::Flow Evaluator::execute(const ast::ExitRepeat&)
{
    return Flow::exitRepeat;
}

Evaluator::Flow Evaluator::execute(const ast::Return& statement)
{
    _result = statement.value ? evaluate(statement.value) : ScriptValue();
    return Flow::returned;
}

Evaluator::Flow Evaluator::execute(const ast::Raise& statement)
{
    ScriptError error{ScriptError::raised, QStringLiteral("An error.")};
    if (statement.message) {
        error.message = operations::textOf(evaluate(statement.message), _budget).value_or(error.message);
    }
    if (statement.number) {
        const qlonglong number = operations::integer(evaluate(statement.number));
        if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
            throw ScriptError{ScriptError::numberTooLarge, QStringLiteral("No error has that number.")};
        }
        error.number = static_cast<int>(number);
    }
    throw error;
}
