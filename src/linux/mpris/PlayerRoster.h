#pragma once

#include "platform/PlayerCasting.h"

#include <QMap>
#include <QObject>

class MprisBus;
class MprisPlayer;

/// The players on the bus, and which of them takes the role of "Music" and of "Spotify" at the moment.
class PlayerRoster : public QObject, public MediaPlayers
{
    Q_OBJECT

public:
    PlayerRoster(MprisBus& bus, const PlayerCasting& casting);

    QList<MediaPlayer> all() const override;
    void send(const QString& id, MediaCommand command) override;

    /// The player in a role; null when none runs.
    MprisPlayer* player(PlayerRole role) const { return _cast.value(role); }

Q_SIGNALS:
    /// A role is taken, by a player that has told its state.
    void appeared(PlayerRole role);

    /// The player of a role has left the bus. Another one may have taken over.
    void vanished(PlayerRole role);

    /// The player of a role has changed its state, or one that plays has taken over.
    void changed(PlayerRole role);

    /// There is more to read of the player of a role than changed() tells: it has moved within its track,
    /// say, or another one has taken over.
    void outdated(PlayerRole role);

    /// The player of a role is elsewhere in its track than was reckoned, or goes at another rate.
    void moved(PlayerRole role);

private:
    void add(MprisPlayer* player);
    void remove(MprisPlayer* player);
    void playerChanged(MprisPlayer* player);
    void recast();

    MprisBus& _bus;
    const PlayerCasting& _casting;
    QMap<PlayerRole, MprisPlayer*> _cast;
};
