#pragma once

#include <QString>

#include <optional>

/// What one script text came to.
struct ScriptOutcome {
    std::optional<QString> reply;   ///< none when it failed or its result has no text form
    std::optional<int> errorNumber; ///< set exactly when it could not be compiled or failed while running
    QString errorMessage;           ///< for the log; empty without an error

    friend bool operator==(const ScriptOutcome&, const ScriptOutcome&) = default;
};

/// Runs script texts against the applications of this desktop.
class ScriptRunner
{
public:
    ScriptRunner() = default;
    virtual ~ScriptRunner() = default;
    ScriptRunner(const ScriptRunner&) = delete;
    ScriptRunner& operator=(const ScriptRunner&) = delete;

    /// Compiles and runs one text on the main thread. Never throws and never waits for a player.
    virtual ScriptOutcome run(const QString& source) = 0;
};
