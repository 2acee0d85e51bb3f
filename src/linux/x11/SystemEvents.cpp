#include "linux/x11/SystemEvents.h"

#include "linux/script/ScriptError.h"
#include "linux/x11/X11Processes.h"

namespace {

[[noreturn]] void refuse(int number, const QString& message)
{
    throw ScriptError{number, message};
}

KeyModifiers modifier(const ScriptValue& value)
{
    static const QMap<QString, KeyModifier> modifiers = {
        {QStringLiteral("shift down"), KeyModifier::shift},
        {QStringLiteral("control down"), KeyModifier::control},
        {QStringLiteral("command down"), KeyModifier::control},
        {QStringLiteral("option down"), KeyModifier::alt},
    };
    const auto* const constant = std::get_if<ScriptConstant>(&value.data);
    const auto found = constant != nullptr ? modifiers.constFind(constant->name) : modifiers.cend();
    if (found == modifiers.cend()) {
        refuse(ScriptError::cannotConvert, QStringLiteral("A modifier key was expected."));
    }
    return *found;
}

/// One modifier, a list of them, or none at all.
KeyModifiers modifiers(const ScriptValue& value)
{
    if (std::holds_alternative<std::monostate>(value.data)) {
        return {};
    }
    const auto* const list = std::get_if<ScriptList>(&value.data);
    if (list == nullptr) {
        return modifier(value);
    }
    KeyModifiers all;
    for (const ScriptValue& each : *list) {
        all |= modifier(each);
    }
    return all;
}

class ProcessObject final : public ScriptObject
{
public:
    ProcessObject(X11Processes::Process process, std::shared_ptr<KeystrokeCourier> courier)
        : _process(std::move(process))
        , _courier(std::move(courier))
    {
    }

    ScriptValue property(const QString& name) override
    {
        if (name == QStringLiteral("name")) {
            return _process.name;
        }
        if (name == QStringLiteral("unix id") && _process.unixId) {
            return qlonglong(*_process.unixId);
        }
        if (name == QStringLiteral("bundle identifier") && _process.bundleId) {
            return *_process.bundleId;
        }
        if (name == QStringLiteral("frontmost")) {
            return _process.isFrontmost;
        }
        return ScriptObject::property(name);
    }

    ScriptValue perform(const QString& command, const ScriptValue& direct,
                        const QMap<QString, ScriptValue>& parameters) override
    {
        if (command != QStringLiteral("keystroke")) {
            return ScriptObject::perform(command, direct, parameters);
        }
        const auto* const text = std::get_if<QString>(&direct.data);
        if (text == nullptr) {
            refuse(ScriptError::cannotConvert, QStringLiteral("A text to type was expected."));
        }
        const Keystroke keystroke{*text, modifiers(parameters.value(QStringLiteral("using")))};
        if (const auto reason = _courier->send(_process.window, keystroke)) {
            refuse(ScriptError::notPermitted, *reason);
        }
        return {};
    }

private:
    X11Processes::Process _process;
    std::shared_ptr<KeystrokeCourier> _courier;
};

} // namespace

SystemEvents::SystemEvents(RunLoop& runLoop) : _courier(std::make_shared<KeystrokeCourier>(runLoop)) {}

std::vector<std::shared_ptr<ScriptObject>> SystemEvents::elements(const QString& className)
{
    if (className != QStringLiteral("process")) {
        return ScriptObject::elements(className);
    }
    std::vector<std::shared_ptr<ScriptObject>> processes;
    for (X11Processes::Process& process : X11Processes::running()) {
        processes.push_back(std::make_shared<ProcessObject>(std::move(process), _courier));
    }
    return processes;
}
