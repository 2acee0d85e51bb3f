#include "accounts/SpotifyAPI.h"

#include "accounts/SpotifyAuthManager.h"
#include "base/DebugLog.h"
#include "base/NotificationCenter.h"
#include "base/RunLoop.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

constexpr double requestTimeout = 5; // seconds
constexpr int unauthorized = 401;
constexpr int tooManyRequests = 429;
constexpr double defaultQuiet = 30; // seconds, for a service that wants us to wait and does not say how long
constexpr qsizetype mostRows = 8;
constexpr qsizetype mostLogged = 1000; // characters of an answer that is none

QString artistsOf(const QJsonObject& entry)
{
    QStringList names;
    const QJsonArray artists = entry.value(QStringLiteral("artists")).toArray();
    for (const QJsonValue artist : artists) {
        if (const QJsonValue name = artist[QStringLiteral("name")]; name.isString()) {
            names << name.toString();
        }
    }
    return names.join(QStringLiteral(", "));
}

} // namespace

SpotifyAPI::SpotifyAPI(Dependencies dependencies) : _from(std::move(dependencies)), _http(_from.runLoop)
{
    connect(&_from.auth, &SpotifyAuthManager::isAuthorizedChanged, this, [this] {
        if (!_from.auth.isAuthorized()) {
            forget();
        }
    });
}

SpotifyAPI& SpotifyAPI::shared()
{
    static auto* const instance = new SpotifyAPI({.runLoop = Platform::current().runLoop,
                                                  .notifications = Platform::current().notifications,
                                                  .auth = SpotifyAuthManager::shared(),
                                                  .addresses = ServiceAddresses(UserDefaults::standard())});
    return *instance;
}

/// What comes next for one account is nothing to the next.
void SpotifyAPI::forget()
{
    _lastQueue.clear();
    _lastQueueFetched = Uptime::distantPast();
}

QList<UpNextTrack> SpotifyAPI::cachedQueue()
{
    if (_from.runLoop.uptime() - _lastQueueFetched > cacheLifetime) {
        refreshQueueAsync();
    }
    return _lastQueue;
}

void SpotifyAPI::refreshQueueAsync()
{
    if (_isFetching || _from.runLoop.uptime() < _quietUntil) {
        return;
    }
    _isFetching = true;
    _from.auth.getValidToken(this, [this](const std::optional<QString>& token) { fetch(token, true); });
}

void SpotifyAPI::fetch(const std::optional<QString>& token, bool mayRefresh)
{
    if (!token) {
        dlog(QStringLiteral("queue: no valid token"));
        _isFetching = false;
        return;
    }
    const QUrl address =
        webAddress(_from.addresses.spotifyWebApi, QStringLiteral("/v1/me/player/queue")).value_or(QUrl());
    _call = _http.send({.url = address,
                        .headers = {{"Authorization", "Bearer " + token->toUtf8()}},
                        .body = {},
                        .followsRedirects = false,
                        .timeout = requestTimeout},
                       this, [this, token = *token, mayRefresh](const HttpReply& reply) {
                           fetched(reply, token, mayRefresh);
                       });
}

/// A token may be withdrawn before its time is over; a new one is worth one more try.
void SpotifyAPI::fetched(const HttpReply& reply, const QString& token, bool mayRefresh)
{
    if (reply.status == unauthorized && mayRefresh) {
        _from.auth.refreshAccessToken(this, [this, reply, token](const std::optional<QString>& newToken) {
            if (newToken) {
                fetch(newToken, false);
            } else {
                read(reply, token);
            }
        });
        return;
    }
    if (reply.status == tooManyRequests) {
        _quietUntil = _from.runLoop.uptime() + std::max(0.0, reply.retryAfter.value_or(defaultQuiet));
    }
    read(reply, token);
}

void SpotifyAPI::read(const HttpReply& reply, const QString& token)
{
    _isFetching = false;
    const QString status = QString::number(reply.status);
    if (reply.hasFailed()) {
        dlog(QStringLiteral("queue: net error ") + reply.failure);
        return;
    }
    if (reply.body.isEmpty()) {
        dlog(QStringLiteral("queue: no data, status=") + status);
        return;
    }
    const QJsonDocument document = QJsonDocument::fromJson(reply.body);
    if (!document.isObject()) {
        const QString body =
            QString::fromUtf8(reply.body).replace(token, QStringLiteral("…")).left(mostLogged);
        dlog(QStringLiteral("queue: bad JSON, status=%1, body=").arg(status) + body);
        return;
    }
    const auto queue = parseQueue(document.object());
    if (!queue) {
        dlog(QStringLiteral("queue: no `queue` field in response, status=") + status);
        return;
    }
    if (!_from.auth.isAuthorized()) {
        return; // it was disconnected meanwhile
    }
    dlog(QStringLiteral("queue: fetched %1 tracks").arg(queue->size()));
    _lastQueue = *queue;
    _lastQueueFetched = _from.runLoop.uptime();
    _from.notifications.post(queueRefreshedNotification);
}

std::optional<QList<UpNextTrack>> SpotifyAPI::parseQueue(const QJsonObject& reply)
{
    const QJsonValue field = reply.value(QStringLiteral("queue"));
    if (!field.isArray()) {
        return std::nullopt;
    }
    const QJsonArray entries = field.toArray();
    QList<UpNextTrack> tracks;
    for (qsizetype i = 0; i < std::min(mostRows, entries.size()); ++i) {
        const QJsonObject entry = entries[i].toObject();
        if (const QJsonValue name = entry.value(QStringLiteral("name")); name.isString()) {
            tracks.append({.title = name.toString(), .artist = artistsOf(entry), .playlistIndex = i + 1});
        }
    }
    return tracks;
}
