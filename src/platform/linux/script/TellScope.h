#pragma once

#include "platform/linux/script/Evaluator.h"

#include <algorithm>

/// What the script talks to for as long as this lives.
class Evaluator::TellScope
{
public:
    /// Throws a ScriptError when the value is no object.
    TellScope(Evaluator& evaluator, const ScriptValue& target);
    ~TellScope() { _evaluator._targets.pop_back(); }
    TellScope(const TellScope&) = delete;
    TellScope& operator=(const TellScope&) = delete;

private:
    Evaluator& _evaluator;
};

/// The object in a value; throws a ScriptError when there is none.
const std::shared_ptr<ScriptObject>& scriptObject(const ScriptValue& value);

/// Whether an expression stands for many things, so that a property of it is a list.
bool isPlural(const ast::Expression& expression);

template<typename Question>
auto Evaluator::askOutward(std::initializer_list<int> unknown, const Question& question)
{
    std::optional<ScriptError> innermost;
    for (size_t i = _targets.size(); i-- > 0;) {
        try {
            return question(*_targets[i]);
        } catch (const ScriptError& error) {
            if (std::find(unknown.begin(), unknown.end(), error.number) == unknown.end()) {
                throw;
            }
            _budget.spend(Budget::failureSteps);
            innermost = innermost.value_or(error);
        }
    }
    throw innermost.value_or(
        ScriptError{ScriptError::noSuchObject, QStringLiteral("Nothing is told to do so.")});
}
