#pragma once

#include "linux/script/Budget.h"
#include "linux/script/ScriptObject.h"

#include <algorithm>
#include <initializer_list>
#include <optional>

/// The object in a value; throws a ScriptError when there is none.
const std::shared_ptr<ScriptObject>& scriptObject(const ScriptValue& value);

/// What the script talks to: the object of each "tell" that is open, the innermost last.
class TellTargets
{
public:
    /// An open "tell", for as long as it lives.
    class Scope
    {
    public:
        /// Throws a ScriptError when the value is no object.
        Scope(TellTargets& targets, const ScriptValue& target);
        ~Scope() { _targets._objects.pop_back(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        TellTargets& _targets;
    };

    explicit TellTargets(Budget& budget) : _budget(budget) {}

    /// Throws a ScriptError when no "tell" is open.
    const std::shared_ptr<ScriptObject>& innermost() const;

    /// Asks the innermost object, then the ones around it as long as the answer is one of the `unknown`
    /// errors. The innermost answer counts when none knows better.
    template<typename Question>
    auto ask(std::initializer_list<int> unknown, const Question& question) const;

private:
    Budget& _budget;
    std::vector<std::shared_ptr<ScriptObject>> _objects;
};

template<typename Question>
auto TellTargets::ask(std::initializer_list<int> unknown, const Question& question) const
{
    std::optional<ScriptError> innermost;
    for (size_t i = _objects.size(); i-- > 0;) {
        try {
            return question(*_objects[i]);
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
