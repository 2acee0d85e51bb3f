#pragma once

#include "platform/EventTaps.h"

#include <QString>

class MprisBus;
class MprisPlayer;
class PlayerRoster;

/// Media keys on this desktop. Where a program has grabbed the key, it gets the key. Where none has, the
/// player that makes the sound gets the command itself, in whatever role or browser it is; and where there is
/// no such player, the window in front gets the key. Each command arrives once.
class DesktopEventTaps final : public EventTaps
{
public:
    DesktopEventTaps(const MprisBus& bus, const PlayerRoster& roster);

    /// What is let in at the HID tap reaches the session, too, so that the session's tap drops it. The key
    /// goes down and up at once, while the modifiers that the user may hold are lifted.
    void post(const SystemDefinedEvent& event, Tap tap) override;

private:
    void press(int key);
    MprisPlayer* target() const;

    const MprisBus& _bus;
    const PlayerRoster& _roster;
    QString _addressed; ///< the player that got the last command, by its unique name
};
