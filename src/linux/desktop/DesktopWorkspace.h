#pragma once

#include "platform/Workspace.h"

class MprisPlayer;
class PlayerRoster;

/// The running applications, as far as they are players on the session bus or show windows.
class DesktopWorkspace final : public Workspace
{
    Q_OBJECT

public:
    explicit DesktopWorkspace(PlayerRoster& roster);

    bool isRunning(const QString& bundleId) const override;
    QString artworkAddress(const QString& bundleId) const override;
    std::optional<PlayerTrack> playerTrack(const QString& bundleId) const override;
    std::optional<PlaybackPosition> playbackPosition(const QString& bundleId) const override;
    void checkPosition(const QString& bundleId) override;
    std::optional<RunningApplication> frontmostApplication() const override;

    /// MPRIS has no ratings.
    PlayerAbilities abilities(const QString& bundleId) const override;

    /// "music://" and "spotify://" bring the running player to the front; any other address, and that of a
    /// player that does not run, goes to the desktop. No desktop has the settings that
    /// "x-apple.systempreferences:" stands for.
    bool open(const QUrl& url) override;

private:
    MprisPlayer* player(const QString& bundleId) const;

    PlayerRoster& _roster;
};
