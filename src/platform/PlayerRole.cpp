#include "platform/PlayerRole.h"

#include "platform/BundleId.h"

QString bundleId(PlayerRole role)
{
    return role == PlayerRole::music ? BundleId::music : BundleId::spotify;
}

std::optional<PlayerRole> roleWithBundleId(const QString& id)
{
    for (const PlayerRole role : {PlayerRole::music, PlayerRole::spotify}) {
        if (bundleId(role) == id) {
            return role;
        }
    }
    return std::nullopt;
}
