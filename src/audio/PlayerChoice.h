#pragma once

#include "platform/PlayerCasting.h"

class UserDefaults;

/// Casts the roles of "Music" and "Spotify". Spotify is any client of that name. Music is the player that the
/// user names under the settings key "pellar.linux.musicPlayer" ("rhythmbox", say); without that it is any
/// player but Spotify, browsers, proxies and phones. Among several, one that answers comes before one that
/// does not; then one that plays, the latest to start before the others; then the one that has played last.
/// Among equals the role stays where it is.
class PlayerChoice final : public PlayerCasting
{
public:
    explicit PlayerChoice(const UserDefaults& defaults) : _defaults(defaults) {}

    std::optional<qsizetype> choose(PlayerRole role, const QList<MediaPlayer>& players) const override;

    /// Empty when the user has named none.
    static QString namedByUser(const UserDefaults& defaults);

private:
    const UserDefaults& _defaults;
};
