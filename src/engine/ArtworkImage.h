#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <stop_token>

/// The image at an address that a player names as the cover: http, https, a file of this computer, or data in
/// the address itself. Blocks for up to ten seconds, less when told to stop. Null when there is no image.
QImage loadArtwork(const QString& address, const std::stop_token& stop);

/// The image in a file's content, upright, in sRGB, and scaled down to 600 pixels where it is larger. Null
/// when it is none that can be read, or one of more than 24 million pixels.
QImage decodeArtwork(const QByteArray& content);
