#include "engine/SongLink.h"

#include "prefs/ServiceAddresses.h"

#include <QUrl>

namespace {

/// Percent-encoded but for what may stand in the query of an address. Empty for broken Unicode.
QString queryEncoded(const QString& text)
{
    if (!QStringView(text).isValidUtf16()) {
        return {};
    }
    static const QByteArray queryPunctuation("!$&'()*+,/:;=?@");
    return QString::fromLatin1(QUrl::toPercentEncoding(text, queryPunctuation));
}

} // namespace

QString songLink(Player player, const QString& title, const QString& artist, const UserDefaults& defaults)
{
    const ServiceAddresses addresses(defaults);
    const QString terms = queryEncoded(title + u' ' + artist);
    switch (player) {
    case Player::spotify:
        return addresses.spotifyWebPlayer + QStringLiteral("/search/") + terms;
    case Player::appleMusic:
        return addresses.appleMusicWeb + QStringLiteral("/search?term=") + terms;
    case Player::systemAudio:
    case Player::none:
        break;
    }
    return title + QStringLiteral(" - ") + artist;
}
