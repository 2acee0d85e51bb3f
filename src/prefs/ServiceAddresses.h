#pragma once

#include <QString>

class UserDefaults;

/// Where the web services are: scheme, host and port, without a slash at the end. Each can be set under the
/// settings key "com.orvalen.pellar.endpoint." followed by the field's name.
struct ServiceAddresses {
    explicit ServiceAddresses(const UserDefaults& defaults);

    QString spotifyWebPlayer;
    QString appleMusicWeb;
    QString lyrics;
    QString artworkSearch;
    QString spotifyAccounts;
    QString spotifyWebApi;
    QString musicKit;

    // Whole addresses, and empty by default: what there is no address for is off.
    QString usagePing;
    QString updateFeed; ///< else the build's, as the next two
    QString webSite;
    QString support;
};
