#include "platform/linux/mpris/PlayerRoster.h"

#include "platform/UserDefaults.h"
#include "platform/linux/mpris/MprisBus.h"
#include "platform/linux/mpris/MprisPlayer.h"

#include <array>

namespace {

constexpr std::array roles = {PlayerRole::music, PlayerRole::spotify};
const QString musicPlayerKey = QStringLiteral("pellar.linux.musicPlayer");

} // namespace

PlayerRoster::PlayerRoster(MprisBus& bus, const UserDefaults& defaults) : _bus(bus), _defaults(defaults)
{
    connect(&_bus, &MprisBus::playerAdded, this, &PlayerRoster::add);
    connect(&_bus, &MprisBus::playerRemoved, this, &PlayerRoster::remove);
    const auto players = _bus.players();
    for (MprisPlayer* const player : players) {
        add(player);
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
    connect(player, &MprisPlayer::jumped, this, [this, player] {
        for (const PlayerRole role : roles) {
            if (_cast.value(role) == player) {
                Q_EMIT jumped(role);
            }
        }
    });
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
        const bool hasTakenOver = now != before.value(role) && now != nullptr && now->isPlaying();
        if (now == player || hasTakenOver) {
            Q_EMIT changed(role);
        }
    }
}

void PlayerRoster::recast()
{
    const auto players = _bus.players();
    const QString preferred = _defaults.string(musicPlayerKey).value_or(QString());
    for (const PlayerRole role : roles) {
        std::vector<PlayerCandidate> candidates;
        for (const MprisPlayer* const player : players) {
            candidates.push_back({.suffixes = player->suffixes,
                                  .isReachable = player->isReady() && !player->isRefused(),
                                  .isPlaying = player->isPlaying(),
                                  .playingSince = player->playingSince(),
                                  .lastPlayed = player->lastPlayed(),
                                  .hasRole = _cast.value(role) == player});
        }
        const auto chosen = choosePlayer(role, candidates, preferred);
        _cast[role] = chosen ? players[static_cast<qsizetype>(*chosen)] : nullptr;
    }
}
