#include "prefs/ServiceAddresses.h"

#include "platform/UserDefaults.h"

namespace {

QString address(const UserDefaults& defaults, const QString& name, const QString& publicAddress)
{
    return defaults.string(QStringLiteral("com.orvalen.pellar.endpoint.") + name).value_or(publicAddress);
}

} // namespace

ServiceAddresses::ServiceAddresses(const UserDefaults& defaults)
    : spotifyWebPlayer(
          address(defaults, QStringLiteral("spotifyWebPlayer"), QStringLiteral("https://open.spotify.com")))
    , appleMusicWeb(
          address(defaults, QStringLiteral("appleMusicWeb"), QStringLiteral("https://music.apple.com")))
    , lyrics(address(defaults, QStringLiteral("lyrics"), QStringLiteral("https://lrclib.net")))
    , artworkSearch(
          address(defaults, QStringLiteral("artworkSearch"), QStringLiteral("https://itunes.apple.com")))
    , spotifyAccounts(address(defaults, QStringLiteral("spotifyAccounts"),
                              QStringLiteral("https://accounts.spotify.com")))
    , spotifyWebApi(
          address(defaults, QStringLiteral("spotifyWebApi"), QStringLiteral("https://api.spotify.com")))
    , musicKit(
          address(defaults, QStringLiteral("musicKit"), QStringLiteral("https://js-cdn.music.apple.com")))
    , usagePing(address(defaults, QStringLiteral("usagePing"), QString()))
    , updateFeed(address(defaults, QStringLiteral("updateFeed"), QStringLiteral(PELLAR_UPDATE_FEED)))
    , webSite(address(defaults, QStringLiteral("webSite"), QStringLiteral(PELLAR_WEB_SITE)))
    , support(address(defaults, QStringLiteral("support"), QStringLiteral(PELLAR_SUPPORT)))
{
}
