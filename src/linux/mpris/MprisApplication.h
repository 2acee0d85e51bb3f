#pragma once

#include "linux/script/ScriptObject.h"
#include "platform/PlayerRole.h"

class MprisPlayer;
class PlayerRoster;

/// A player as scripts see it: the vocabulary of "Music" or "Spotify" over the player that has this role.
/// Everything is answered from the mirror; commands are sent without waiting.
class MprisApplication final : public ScriptObject
{
public:
    MprisApplication(PlayerRoster& roster, PlayerRole role);

    ScriptValue property(const QString& name) override;
    void setProperty(const QString& name, const ScriptValue& value) override;
    std::vector<std::shared_ptr<ScriptObject>> elements(const QString& className) override;
    ScriptValue perform(const QString& command, const ScriptValue& direct,
                        const QMap<QString, ScriptValue>& parameters) override;

private:
    MprisPlayer& player() const;

    PlayerRoster& _roster;
    PlayerRole _role;
};
