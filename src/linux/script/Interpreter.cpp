#include "linux/script/Interpreter.h"

#include "linux/script/Lexer.h"
#include "linux/script/Parser.h"

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(scriptLog, "com.orvalen.pellar.script", QtWarningMsg)

namespace {
/// The size of the cache, in characters of source text: more than the scripts that are run again and again.
constexpr qsizetype cacheCapacity = 65'536;

/// A list is no reply, although its items could be written in one go.
std::optional<QString> replyText(const ScriptValue& value)
{
    Budget budget;
    return std::holds_alternative<ScriptList>(value.data) ? std::nullopt : operations::textOf(value, budget);
}

} // namespace

Interpreter::Interpreter(Applications applications)
    : _applications(
          [lookUp = std::move(applications)](const QString& name) { return lookUp(name.toLower()); })
    , _cache(cacheCapacity)
{
}

ScriptOutcome Interpreter::run(const QString& source)
{
    ScriptOutcome result = outcome(source);
    if (result.errorNumber) {
        qCDebug(scriptLog).noquote() << "script error" << *result.errorNumber
                                     << result.errorMessage.simplified();
    }
    return result;
}

ScriptOutcome Interpreter::outcome(const QString& source)
{
    try {
        const Compiled script = compiled(source);
        const ScriptValue value = Evaluator(*script, _applications).run();
        return {replyText(value), std::nullopt, {}};
    } catch (const ScriptError& error) {
        return {std::nullopt, error.number, error.message};
    } catch (const std::exception& error) { // out of memory, say
        return {std::nullopt, ScriptError::raised, QString::fromLocal8Bit(error.what())};
    }
}

Interpreter::Compiled Interpreter::compiled(const QString& source)
{
    if (const Compiled* const known = _cache.object(source)) {
        return *known;
    }
    auto script = std::make_shared<const ast::Script>(Parser(Lexer(source).tokens()).script());
    _cache.insert(source, new Compiled(script), source.size() + 1);
    return script;
}
