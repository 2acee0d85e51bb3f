#pragma once

#include "platform/Automation.h"

class PlayerRoster;

/// Automation answers of this desktop: a player that runs may be automated unless the session bus says no,
/// and key events may be sent where the X server has XTEST.
class DesktopAutomation final : public Automation
{
public:
    explicit DesktopAutomation(const PlayerRoster& roster);

    std::optional<int> permission(const QString& bundleId) const override;
    bool isTrustedForAccessibility() const override;

private:
    const PlayerRoster& _roster;
};
