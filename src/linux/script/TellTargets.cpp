#include "linux/script/TellTargets.h"

const std::shared_ptr<ScriptObject>& scriptObject(const ScriptValue& value)
{
    const auto* const object = std::get_if<std::shared_ptr<ScriptObject>>(&value.data);
    if (object == nullptr || *object == nullptr) {
        throw ScriptError{ScriptError::noSuchObject, QStringLiteral("That is no object.")};
    }
    return *object;
}

TellTargets::Scope::Scope(TellTargets& targets, const ScriptValue& target) : _targets(targets)
{
    _targets._objects.push_back(scriptObject(target));
}

const std::shared_ptr<ScriptObject>& TellTargets::innermost() const
{
    if (_objects.empty()) {
        throw ScriptError{ScriptError::noSuchObject, QStringLiteral("Can’t get it.")};
    }
    return _objects.back();
}
