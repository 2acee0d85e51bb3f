#pragma once

#include "platform/linux/mpris/PlayerRole.h"

#include <QMap>
#include <QObject>

class MprisBus;
class MprisPlayer;
class UserDefaults;

/// Who plays the roles of "Music" and "Spotify" at the moment. The user can name the Music player under the
/// settings key "pellar.linux.musicPlayer" (a bus name without "org.mpris.MediaPlayer2.", say "rhythmbox").
class PlayerRoster : public QObject
{
    Q_OBJECT

public:
    PlayerRoster(MprisBus& bus, const UserDefaults& defaults);

    /// The player in a role; null when none runs.
    MprisPlayer* player(PlayerRole role) const { return _cast.value(role); }

    bool hasRole(const MprisPlayer* player) const { return _cast.values().contains(player); }

Q_SIGNALS:
    /// A role is taken, by a player that has told its state.
    void appeared(PlayerRole role);

    /// The player of a role has left the bus. Another one may have taken over.
    void vanished(PlayerRole role);

    /// The player of a role has changed its state, or one that plays has taken over.
    void changed(PlayerRole role);

    /// The player of a role has moved within its track.
    void jumped(PlayerRole role);

private:
    void add(MprisPlayer* player);
    void remove(MprisPlayer* player);
    void playerChanged(MprisPlayer* player);
    void recast();

    MprisBus& _bus;
    const UserDefaults& _defaults;
    QMap<PlayerRole, MprisPlayer*> _cast;
};
