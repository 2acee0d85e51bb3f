#pragma once

#include "base/HttpClient.h"
#include "base/Uptime.h"
#include "prefs/ServiceAddresses.h"
#include "prefs/UpNextTrack.h"

#include <QJsonObject>

class NotificationCenter;
class SpotifyAuthManager;

/// What plays next in the connected Spotify account. Readers get what is known at once; a newer list is
/// fetched behind their backs and told of.
class SpotifyAPI : public QObject
{
    Q_OBJECT

public:
    /// Posted after every list that was fetched.
    static inline const QString queueRefreshedNotification =
        QStringLiteral("com.orvalen.pellar.spotifyQueueRefreshed");

    static constexpr double cacheLifetime = 4.0; ///< seconds

    struct Dependencies {
        RunLoop& runLoop;
        NotificationCenter& notifications;
        SpotifyAuthManager& auth;
        ServiceAddresses addresses;
    };

    explicit SpotifyAPI(Dependencies dependencies);
    static SpotifyAPI& shared();

    /// The list as last fetched, eight rows at most. One that is older than its lifetime is fetched anew.
    QList<UpNextTrack> cachedQueue();

    /// Fetches the list, unless that is under way or the service has asked to wait. A failure leaves the old
    /// list in place and a line in the log.
    void refreshQueueAsync();

    /// The first eight entries of "queue" that have a name; none when there is no such array.
    static std::optional<QList<UpNextTrack>> parseQueue(const QJsonObject& reply);

private:
    void forget();
    void fetch(const std::optional<QString>& token, bool mayRefresh);
    void fetched(const HttpReply& reply, const QString& token, bool mayRefresh);
    void read(const HttpReply& reply, const QString& token);

    Dependencies _from;
    HttpClient _http;
    std::unique_ptr<HttpCall> _call;
    bool _isFetching = false;
    Uptime _quietUntil = Uptime::distantPast(); ///< the service does not want to be asked before
    QList<UpNextTrack> _lastQueue;
    Uptime _lastQueueFetched = Uptime::distantPast();
};
