#include "engine/NowPlayingService.h"
#include "engine/PlayerScripts.h"
#include "platform/Automation.h"
#include "platform/Platform.h"
#include "platform/ScriptRunner.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <QUrl>

bool NowPlayingService::hasAccess(const QString& toBundleId)
{
    const QString key = QStringLiteral("pellar.permission.granted.") + toBundleId;
    const auto answer = _platform.automation.permission(toBundleId);
    if (!answer || *answer == Automation::targetNotRunning) {
        return _defaults.boolean(key).value_or(false);
    }
    const bool isGranted = *answer == Automation::granted;
    _defaults.setObject(key, isGranted);
    return isGranted;
}

void NowPlayingService::requestAccess(const QString& targetAppName)
{
    _platform.runLoop.after(0, this, [this, targetAppName] {
        const ScriptOutcome outcome = _platform.scripts.run(PlayerScripts::automationProbe(targetAppName));
        if (outcome.errorNumber == Automation::refused) {
            openAutomationSettings();
        }
    });
}

void NowPlayingService::openAutomationSettings()
{
    _platform.workspace.open(
        QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Automation")));
}
