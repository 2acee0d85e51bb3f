#include "audio/AwaitedPlayer.h"

#include "audio/PlayerChoice.h"
#include "platform/BundleId.h"
#include "platform/Workspace.h"

AwaitedPlayer::AwaitedPlayer(const Workspace& workspace, const UserDefaults& defaults)
    : _workspace(workspace)
    , _defaults(defaults)
{
    connect(&_workspace, &Workspace::applicationLaunched, this, &AwaitedPlayer::nameChanged);
    connect(&_workspace, &Workspace::applicationTerminated, this, &AwaitedPlayer::nameChanged);
}

QString AwaitedPlayer::name() const
{
    return _workspace.isRunning(BundleId::music) ? QString() : PlayerChoice::namedByUser(_defaults);
}
