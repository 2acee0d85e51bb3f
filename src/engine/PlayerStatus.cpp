#include "engine/PlayerStatus.h"

#include "base/Decimal.h"

#include <QStringList>

namespace {

std::optional<QString> artworkUrl(const QStringList& fields)
{
    const QString url = fields.value(6).trimmed();
    return url.isEmpty() ? std::nullopt : std::optional(url);
}

} // namespace

std::optional<PlayerStatus> parseStatusReply(const QString& reply, Player player)
{
    constexpr qsizetype fewestFields = 6;
    const QStringList fields = reply.split(QStringLiteral("|||"));
    if (reply == QStringLiteral("STOPPED") || fields.size() < fewestFields) {
        return std::nullopt;
    }
    const bool isSpotify = player == Player::spotify; // counts the length in milliseconds
    return PlayerStatus{
        .title = fields[0],
        .artist = fields[1],
        .album = fields[2],
        .duration = parseDecimal(fields[3]) / (isSpotify ? 1000 : 1),
        .position = parseDecimal(fields[4]),
        .isPlaying = fields[5] == QStringLiteral("true"),
        .artworkUrl = isSpotify ? artworkUrl(fields) : std::nullopt,
    };
}
