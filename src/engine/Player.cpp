#include "engine/Player.h"

QString playerName(Player player)
{
    switch (player) {
    case Player::appleMusic:
        return QStringLiteral("appleMusic");
    case Player::spotify:
        return QStringLiteral("spotify");
    case Player::systemAudio:
        return QStringLiteral("systemAudio");
    case Player::none:
        break;
    }
    return QStringLiteral("none");
}
