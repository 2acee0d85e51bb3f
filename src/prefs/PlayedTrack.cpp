#include "prefs/PlayedTrack.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString titleField = QStringLiteral("title");
const QString artistField = QStringLiteral("artist");
const QString albumField = QStringLiteral("album");
const QString playedAtField = QStringLiteral("playedAt");
const QString sourceField = QStringLiteral("source");

std::optional<PlayedTrack> decode(const QJsonObject& object)
{
    for (const QString& field : {titleField, artistField, albumField, sourceField}) {
        if (!object.value(field).isString()) {
            return std::nullopt;
        }
    }
    const QJsonValue playedAt = object.value(playedAtField);
    if (!playedAt.isDouble()) {
        return std::nullopt;
    }
    return PlayedTrack{.title = object.value(titleField).toString(),
                       .artist = object.value(artistField).toString(),
                       .album = object.value(albumField).toString(),
                       .playedAt = {playedAt.toDouble()},
                       .source = object.value(sourceField).toString()};
}

} // namespace

QByteArray encodePlayedTracks(const QList<PlayedTrack>& tracks)
{
    QJsonArray array;
    for (const PlayedTrack& track : tracks) {
        array.append(QJsonObject{{titleField, track.title},
                                 {artistField, track.artist},
                                 {albumField, track.album},
                                 {playedAtField, track.playedAt.sinceReference},
                                 {sourceField, track.source}});
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QList<PlayedTrack>> decodePlayedTracks(const QByteArray& json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<PlayedTrack> tracks;
    const QJsonArray array = document.array();
    for (const QJsonValue value : array) {
        const auto track = decode(value.toObject());
        if (!track) {
            return std::nullopt;
        }
        tracks.append(*track);
    }
    return tracks;
}
