#pragma once

#include "linux/script/Evaluator.h"
#include "platform/ScriptRunner.h"

#include <QCache>

/// Runs script texts against objects that stand for applications. Compiled scripts are kept, because the same
/// few are run again and again. One thread at a time.
class Interpreter final : public ScriptRunner
{
public:
    /// Gives the application with a name, in lower case ("music", "system events"); null when it is unknown
    /// or does not run, which is error -600 for everything that a script asks of it. It is asked at every
    /// run.
    using Applications = Evaluator::Applications;

    explicit Interpreter(Applications applications);

    /// The reply is none for a result without a text form: an object, a list, no value.
    ScriptOutcome run(const QString& source) override;

private:
    using Compiled = std::shared_ptr<const ast::Script>;

    ScriptOutcome outcome(const QString& source);
    Compiled compiled(const QString& source);

    Applications _applications;
    QCache<QString, Compiled> _cache; ///< by source; the cost is its length
};
