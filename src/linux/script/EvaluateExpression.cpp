#include "linux/script/Evaluator.h"

namespace {

/// What stands for an application that does not run: whatever is asked of it fails.
class AbsentApplication final : public ScriptObject
{
public:
    explicit AbsentApplication(QString name) : _name(std::move(name)) {}

    ScriptValue property(const QString& name) override
    {
        if (name == QStringLiteral("running")) {
            return false;
        }
        fail();
    }
    void setProperty(const QString&, const ScriptValue&) override { fail(); }
    std::vector<std::shared_ptr<ScriptObject>> elements(const QString&) override { fail(); }
    ScriptValue perform(const QString&, const ScriptValue&, const QMap<QString, ScriptValue>&) override
    {
        fail();
    }

private:
    [[noreturn]] void fail() const
    {
        throw ScriptError{ScriptError::notRunning,
                          QStringLiteral("Application “%1” isn’t running.").arg(_name)};
    }

    QString _name;
};

[[noreturn]] void noSuchObject(const QString& name)
{
    throw ScriptError{ScriptError::noSuchObject, QStringLiteral("Can’t get %1.").arg(name)};
}

bool isItem(const QString& className)
{
    return className == QStringLiteral("item");
}

/// The index from 0 of a number that counts from 1, or from the end when it is negative.
qsizetype position(qlonglong number, qsizetype count)
{
    const qlonglong index = number > 0 ? number - 1 : number < 0 ? count + number : -1;
    if (index < 0 || index >= count) {
        throw ScriptError{ScriptError::noSuchIndex, QStringLiteral("Can’t get item %1.").arg(number)};
    }
    return static_cast<qsizetype>(index);
}

} // namespace

bool Evaluator::isPlural(const ast::Expression& expression)
{
    if (const auto* const property = std::get_if<ast::Property>(&expression.data)) {
        return property->container && isPlural(*property->container);
    }
    const auto* const element = std::get_if<ast::Element>(&expression.data);
    if (element == nullptr) {
        return false;
    }
    const bool isNested = element->container && !isItem(element->className) && isPlural(*element->container);
    return !element->index || isNested;
}

ScriptValue Evaluator::evaluate(const ast::ExpressionPtr& expression)
{
    _budget.spend();
    return std::visit([this](const auto& node) { return evaluate(node); }, expression->data);
}

ScriptValue Evaluator::evaluate(const ast::Literal& literal)
{
    return literal.value;
}

ScriptValue Evaluator::evaluate(const ast::Variable& variable)
{
    const ScriptValue& value = _frame[static_cast<size_t>(variable.slot)];
    if (std::holds_alternative<std::monostate>(value.data)) {
        throw ScriptError{ScriptError::undefinedVariable,
                          QStringLiteral("The variable %1 is not defined.").arg(variable.name)};
    }
    return value;
}

ScriptValue Evaluator::evaluate(const ast::Target&)
{
    return _targets.innermost();
}

ScriptValue Evaluator::evaluate(const ast::ListDisplay& list)
{
    ScriptList items;
    items.reserve(static_cast<qsizetype>(list.items.size()));
    for (const ast::ExpressionPtr& item : list.items) {
        items.append(evaluate(item));
    }
    return operations::makeList(std::move(items), _budget);
}

ScriptValue Evaluator::evaluate(const ast::Application& application)
{
    std::shared_ptr<ScriptObject> object = _applications(application.name);
    if (!object) {
        object = std::make_shared<AbsentApplication>(application.name);
    }
    return object;
}

ScriptValue Evaluator::evaluate(const ast::Property& property)
{
    if (!property.container) {
        return _targets.ask({ScriptError::noSuchObject},
                            [&](ScriptObject& object) { return object.property(property.name); });
    }
    const ScriptValue owner = evaluate(property.container);
    const auto* const owners = std::get_if<ScriptList>(&owner.data);
    if (owners == nullptr || !isPlural(*property.container)) {
        return propertyOf(owner, property.name);
    }
    ScriptList values;
    values.reserve(owners->size());
    for (const ScriptValue& each : *owners) {
        values.append(propertyOf(each, property.name));
    }
    return operations::makeList(std::move(values), _budget);
}

ScriptValue Evaluator::propertyOf(const ScriptValue& owner, const QString& name)
{
    if (name == QStringLiteral("length")) {
        if (const auto* const list = std::get_if<ScriptList>(&owner.data)) {
            return qlonglong(list->size());
        }
        if (const auto* const text = std::get_if<QString>(&owner.data)) {
            return qlonglong(text->size());
        }
    }
    if (!std::holds_alternative<std::shared_ptr<ScriptObject>>(owner.data)) {
        noSuchObject(name);
    }
    return scriptObject(owner)->property(name);
}

ScriptValue Evaluator::evaluate(const ast::Element& element)
{
    if (!element.container) {
        const auto objects = _targets.ask({ScriptError::noSuchObject}, [&](ScriptObject& object) {
            return object.elements(element.className);
        });
        return select(ScriptList(objects.begin(), objects.end()), element);
    }
    const ScriptValue owner = evaluate(element.container);
    const auto* const owners = std::get_if<ScriptList>(&owner.data);
    const bool isEach = owners != nullptr && isPlural(*element.container) && !isItem(element.className);
    if (!isEach) {
        return select(elementsOf(owner, element.className), element);
    }
    ScriptList lists;
    for (const ScriptValue& each : *owners) {
        lists.append(select(elementsOf(each, element.className), element));
    }
    return operations::makeList(std::move(lists), _budget);
}

ScriptList Evaluator::elementsOf(const ScriptValue& owner, const QString& className)
{
    if (isItem(className)) {
        if (const auto* const list = std::get_if<ScriptList>(&owner.data)) {
            return *list;
        }
        if (const auto* const text = std::get_if<QString>(&owner.data)) {
            _budget.spend(text->size());
            ScriptList characters;
            for (const QChar character : *text) {
                characters.append(QString(character));
            }
            return characters;
        }
    }
    if (!std::holds_alternative<std::shared_ptr<ScriptObject>>(owner.data)) {
        noSuchObject(className);
    }
    const auto objects = scriptObject(owner)->elements(className);
    _budget.spend(static_cast<qint64>(objects.size()));
    return {objects.begin(), objects.end()};
}

ScriptValue Evaluator::select(const ScriptList& candidates, const ast::Element& element)
{
    const ScriptList fitting = element.filter ? filtered(candidates, element) : candidates;
    if (!element.index) {
        return operations::makeList(fitting, _budget);
    }
    const ScriptValue index = evaluate(element.index);
    if (const auto* const name = std::get_if<QString>(&index.data)) {
        return named(fitting, *name);
    }
    return fitting.at(position(operations::integer(index), fitting.size()));
}

/// Those that fit, and no more of them than a literal index asks for.
ScriptList Evaluator::filtered(const ScriptList& candidates, const ast::Element& element)
{
    const auto* const literal = element.index ? std::get_if<ast::Literal>(&element.index->data) : nullptr;
    const auto* const number = literal != nullptr ? std::get_if<qlonglong>(&literal->value.data) : nullptr;
    const qlonglong wanted = number != nullptr && *number > 0 ? *number : candidates.size();
    ScriptList fitting;
    for (const ScriptValue& candidate : candidates) {
        if (fitting.size() >= wanted) {
            break;
        }
        if (matches(candidate, *element.filter)) {
            fitting.append(candidate);
        }
    }
    return fitting;
}

ScriptValue Evaluator::named(const ScriptList& candidates, const QString& name)
{
    for (const ScriptValue& candidate : candidates) {
        if (operations::equal(propertyOf(candidate, QStringLiteral("name")), name, _budget)) {
            return candidate;
        }
    }
    noSuchObject(QStringLiteral("“%1”").arg(name));
}

bool Evaluator::matches(const ScriptValue& candidate, const ast::Expression& filter)
{
    const TellTargets::Scope scope(_targets, candidate);
    try {
        _budget.spend();
        return operations::truth(
            std::visit([this](const auto& node) { return evaluate(node); }, filter.data));
    } catch (const ScriptError& error) {
        // What does not have the property does not fit.
        if (error.number != ScriptError::noSuchObject) {
            throw;
        }
        _budget.spend(Budget::failureSteps);
        return false;
    }
}

ScriptValue Evaluator::evaluate(const ast::Count& count)
{
    const ScriptValue value = evaluate(count.operand);
    return propertyOf(value, QStringLiteral("length"));
}

ScriptValue Evaluator::evaluate(const ast::Command& command)
{
    const ScriptValue direct = command.direct ? evaluate(command.direct) : ScriptValue();
    QMap<QString, ScriptValue> parameters;
    for (const auto& [label, expression] : command.parameters) {
        parameters.insert(label, evaluate(expression));
    }
    return _targets.ask({ScriptError::notUnderstood}, [&](ScriptObject& object) {
        return object.perform(command.name, direct, parameters);
    });
}

ScriptValue Evaluator::evaluate(const ast::Unary& unary)
{
    const ScriptValue operand = evaluate(unary.operand);
    if (unary.operation == ast::Unary::Operator::logicalNot) {
        return !operations::truth(operand);
    }
    return operations::negated(operand);
}

ScriptValue Evaluator::evaluate(const ast::Binary& binary)
{
    const bool isAnd = binary.operation == BinaryOperator::logicalAnd;
    if (isAnd || binary.operation == BinaryOperator::logicalOr) {
        const bool left = operations::truth(evaluate(binary.left));
        return left == isAnd ? operations::truth(evaluate(binary.right)) : left;
    }
    const ScriptValue left = evaluate(binary.left);
    return operations::binary(binary.operation, left, evaluate(binary.right), _budget);
}

ScriptValue Evaluator::evaluate(const ast::Coercion& coercion)
{
    return operations::coerced(evaluate(coercion.operand), coercion.kind, _budget);
}
