#include "linux/desktop/DesktopAutomation.h"

#include "linux/mpris/MprisPlayer.h"
#include "linux/mpris/PlayerRoster.h"
#include "linux/x11/X11Session.h"

DesktopAutomation::DesktopAutomation(const PlayerRoster& roster) : _roster(roster) {}

std::optional<int> DesktopAutomation::permission(const QString& bundleId) const
{
    const auto role = roleWithBundleId(bundleId);
    if (!role) {
        return std::nullopt;
    }
    const MprisPlayer* const player = _roster.player(*role);
    if (player == nullptr) {
        return targetNotRunning;
    }
    return player->isRefused() ? refused : granted;
}

bool DesktopAutomation::isTrustedForAccessibility() const
{
    static const bool hasXTest = X11Session::hasXTest();
    return hasXTest;
}
