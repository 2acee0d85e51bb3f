#include "prefs/PlayedTrack.h"

namespace {

const QString titleField = QStringLiteral("title");
const QString artistField = QStringLiteral("artist");
const QString albumField = QStringLiteral("album");
const QString playedAtField = QStringLiteral("playedAt");
const QString sourceField = QStringLiteral("source");

} // namespace

QJsonObject PlayedTrack::json() const
{
    return {{titleField, title},
            {artistField, artist},
            {albumField, album},
            {playedAtField, playedAt.sinceReference},
            {sourceField, source}};
}

std::optional<PlayedTrack> PlayedTrack::fromJson(const QJsonObject& object)
{
    PlayedTrack track{.title = object.value(titleField).toString(),
                      .artist = object.value(artistField).toString(),
                      .album = object.value(albumField).toString(),
                      .playedAt = {object.value(playedAtField).toDouble()},
                      .source = object.value(sourceField).toString()};
    return track.title.isEmpty() ? std::nullopt : std::optional(std::move(track));
}
