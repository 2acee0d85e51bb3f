#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// The address under which the artwork search service is asked for a song. None for a song without a name,
/// and when the service is no web address.
std::optional<QUrl> artworkSearchAddress(const QString& service, const QString& title, const QString& artist);

/// The cover in a search reply, at 600 by 600 pixels: that of the first result from the album, as far as one
/// is given and found, else of the first result. None when the reply cannot be read or has no cover there.
std::optional<QUrl> chosenArtwork(const QByteArray& reply, const QString& album);
