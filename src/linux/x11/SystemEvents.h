#pragma once

#include "linux/script/ScriptObject.h"
#include "linux/x11/KeystrokeCourier.h"

/// The application "System Events" as scripts see it: the processes that show windows, and keystrokes for
/// them.
class SystemEvents final : public ScriptObject
{
public:
    explicit SystemEvents(RunLoop& runLoop);

    std::vector<std::shared_ptr<ScriptObject>> elements(const QString& className) override;

private:
    /// Shared with the processes, which a script may hold longer than this.
    std::shared_ptr<KeystrokeCourier> _courier;
};
