#include "linux/mpris/PlayerRoster.h"

#include "linux/mpris/MprisBus.h"
#include "linux/mpris/MprisPlayer.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array roles = {PlayerRole::music, PlayerRole::spotify};

} // namespace

PlayerRoster::PlayerRoster(MprisBus& bus, const PlayerCasting& casting) : _bus(bus), _casting(casting)
{
    connect(&_bus, &MprisBus::playerAdded, this, &PlayerRoster::add);
    connect(&_bus, &MprisBus::playerRemoved, this, &PlayerRoster::remove);
    const auto players = _bus.players();
    for (MprisPlayer* const player : players) {
        add(player);
    }
}

QList<MediaPlayer> PlayerRoster::all() const
{
    QList<MediaPlayer> players;
    const auto onBus = _bus.players();
    for (MprisPlayer* const player : onBus) {
        players.append({.id = player->uniqueName(),
                        .names = player->suffixes,
                        .isReachable = player->isReady() && !player->isRefused(),
                        .isPlaying = player->isPlaying(),
                        .playingSince = player->playingSince(),
                        .lastPlayed = player->lastPlayed(),
                        .roles = _cast.keys(player),
                        .processId = player->processId});
    }
    return players;
}

void PlayerRoster::send(const QString& id, MediaCommand command)
{
    const auto players = _bus.players();
    const auto player = std::find_if(players.begin(), players.end(),
                                     [&id](const MprisPlayer* each) { return each->uniqueName() == id; });
    if (player == players.end()) {
        return;
    }
    switch (command) {
    case MediaCommand::playPause:
        (*player)->playPause();
        break;
    case MediaCommand::next:
        (*player)->next();
        break;
    case MediaCommand::previous:
        (*player)->previous();
        break;
    }
}

void PlayerRoster::add(MprisPlayer* player)
{
    connect(player, &MprisPlayer::becameReady, this, [this, player] {
        recast();
        for (const PlayerRole role : roles) {
            if (_cast.value(role) == player) {
                Q_EMIT appeared(role);
            }
        }
    });
    connect(player, &MprisPlayer::changed, this, [this, player] { playerChanged(player); });
    const auto passOn = [this, player](void (MprisPlayer::*from)(), void (PlayerRoster::*to)(PlayerRole)) {
        connect(player, from, this, [this, player, to] {
            for (const PlayerRole role : roles) {
                if (_cast.value(role) == player) {
                    Q_EMIT(this->*to)(role);
                }
            }
        });
    };
    passOn(&MprisPlayer::outdated, &PlayerRoster::outdated);
    passOn(&MprisPlayer::moved, &PlayerRoster::moved);
    recast();
}

void PlayerRoster::remove(MprisPlayer* player)
{
    disconnect(player, nullptr, this, nullptr);
    const auto before = _cast;
    recast();
    for (const PlayerRole role : roles) {
        if (before.value(role) == player) {
            Q_EMIT vanished(role);
        }
    }
}

void PlayerRoster::playerChanged(MprisPlayer* player)
{
    const auto before = _cast;
    recast();
    for (const PlayerRole role : roles) {
        MprisPlayer* const now = _cast.value(role);
        const bool isAnother = now != before.value(role);
        if (now == player || (isAnother && now != nullptr && now->isPlaying())) {
            Q_EMIT changed(role);
        }
        if (isAnother) {
            Q_EMIT outdated(role); // where the other one is in its track, for one
        }
    }
}

void PlayerRoster::recast()
{
    const auto players = _bus.players();
    const auto candidates = all();
    for (const PlayerRole role : roles) {
        const auto chosen = _casting.choose(role, candidates);
        _cast[role] = chosen ? players[*chosen] : nullptr;
    }
}
