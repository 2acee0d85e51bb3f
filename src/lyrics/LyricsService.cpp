#include "lyrics/LyricsService.h"

#include "base/DebugLog.h"
#include "base/NotificationCenter.h"
#include "lyrics/Characters.h"
#include "lyrics/LrcParser.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "prefs/ServiceAddresses.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

constexpr double timeoutSeconds = 15;
constexpr int statusOk = 200;

void log(const QString& message)
{
    dlog(QStringLiteral("Lyrics: ") + message);
}

QString synced(const Lyrics& lyrics)
{
    return QStringLiteral("synced=%1 plainLen=%2")
        .arg(lyrics.synced.size())
        .arg(Characters::count(lyrics.plain.value_or(QString())));
}

std::optional<QString> string(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

Lyrics parseAPIResponse(const QJsonObject& object, const LyricsRequest& request)
{
    return {.trackTitle = request.title,
            .artist = request.artist,
            .synced = parseSynced(string(object, QStringLiteral("syncedLyrics")).value_or(QString())),
            .plain = string(object, QStringLiteral("plainLyrics"))};
}

/// The JSON of a good answer; null for any other.
QJsonDocument json(const HttpReply& reply)
{
    return reply.status == statusOk ? QJsonDocument::fromJson(reply.body) : QJsonDocument();
}

/// An array of nothing but objects, and of one at least.
bool isListOfObjects(const QJsonArray& array)
{
    return !array.isEmpty() &&
           std::all_of(array.begin(), array.end(), [](const QJsonValue& value) { return value.isObject(); });
}

} // namespace

LyricsService::LyricsService(RunLoop& runLoop, NotificationCenter& notifications,
                             const UserDefaults& defaults, const Workspace& workspace, AppleMusic appleMusic)
    : _defaults(defaults)
    , _appleMusic(std::move(appleMusic))
    , _local(runLoop, workspace)
    , _http(runLoop)
{
    notifications.observe(QStringLiteral("com.orvalen.pellar.appleMusicAuthChanged"), this,
                          [this](const QVariantMap&) { flush(); });
}

LyricsService& LyricsService::shared()
{
    static auto* const instance = [] {
        const Platform& platform = Platform::current();
        return new LyricsService(platform.runLoop, platform.notifications, UserDefaults::standard(),
                                 platform.workspace,
                                 [](const LyricsRequest& request, QObject* context, auto completion) {
                                     AppleMusicLyricsService::shared().fetch(request, context, completion);
                                 });
    }();
    return *instance;
}

void LyricsService::fetch(const QString& title, const QString& artist, const QString& album)
{
    _inflightTask.reset();
    _lookup.reset();
    const LyricsRequest request{.title = title, .artist = artist, .album = album};
    _lastRequest = request;
    if (title.isEmpty() || artist.isEmpty()) {
        settle(std::nullopt);
        findLocally(request, [] {}); // a file without tags may have its words beside it
        return;
    }
    if (const auto found = _cache.constFind(request.key()); found != _cache.constEnd()) {
        settle(*found);
        return;
    }
    _current = std::nullopt;
    _isLoading = true;
    log(QStringLiteral("fetch start: title=") + title + QStringLiteral(" artist=") + artist +
        QStringLiteral(" album=") + album);
    findLocally(request, [this, request] { askAppleMusic(request); });
}

/// Begins a lookup. `otherwise` goes on with it where this machine has no lyrics of the track.
void LyricsService::findLocally(const LyricsRequest& request, std::function<void()> otherwise)
{
    _lookup = std::make_unique<QObject>();
    _local.find(request, _lookup.get(),
                [this, request, otherwise = std::move(otherwise)](const std::optional<Lyrics>& lyrics) {
                    if (!lyrics) {
                        otherwise();
                        return;
                    }
                    log(QStringLiteral("local hit: ") + synced(*lyrics));
                    keep(request, *lyrics);
                });
}

void LyricsService::askAppleMusic(const LyricsRequest& request)
{
    _appleMusic(request, _lookup.get(), [this, lookup = QPointer(_lookup.get()), request](const auto& lines) {
        if (lookup.isNull()) {
            return;
        }
        if (!lines || lines->isEmpty()) {
            log(QStringLiteral("Apple Music miss — falling back to lrclib"));
            fetchExact(request);
            return;
        }
        log(QStringLiteral("Apple Music hit: %1 lines").arg(lines->size()));
        keep(request, {.trackTitle = request.title, .artist = request.artist, .synced = *lines});
    });
}

void LyricsService::fetchExact(const LyricsRequest& request)
{
    get(QStringLiteral("exact"), QStringLiteral("/api/get"),
        {{QStringLiteral("track_name"), request.title},
         {QStringLiteral("artist_name"), request.artist},
         {QStringLiteral("album_name"), request.album}},
        request, &LyricsService::readExact);
}

void LyricsService::readExact(const LyricsRequest& request, const HttpReply& reply)
{
    const QJsonDocument document = json(reply);
    if (!document.isObject()) {
        fetchFuzzy(request);
        return;
    }
    const Lyrics lyrics = parseAPIResponse(document.object(), request);
    log(QStringLiteral("exact hit: ") + synced(lyrics));
    keep(request, lyrics);
}

void LyricsService::fetchFuzzy(const LyricsRequest& request)
{
    get(QStringLiteral("fuzzy"), QStringLiteral("/api/search"),
        {{QStringLiteral("track_name"), request.title}, {QStringLiteral("artist_name"), request.artist}},
        request, &LyricsService::readFuzzy);
}

void LyricsService::readFuzzy(const LyricsRequest& request, const HttpReply& reply)
{
    const QJsonArray found = json(reply).array();
    if (!isListOfObjects(found)) {
        log(QStringLiteral("fuzzy miss"));
        keep(request, {.trackTitle = request.title, .artist = request.artist});
        return;
    }
    const Lyrics lyrics = parseAPIResponse(found.first().toObject(), request);
    log(QStringLiteral("fuzzy hit (%1 total): ").arg(found.size()) + synced(lyrics));
    keep(request, lyrics);
}

/// Asks the lyrics service; `kind` is what the log calls the request.
void LyricsService::get(const QString& kind, const QString& path, const QueryItems& items,
                        const LyricsRequest& request, Handler handler)
{
    const QString service = ServiceAddresses(_defaults).lyrics;
    const auto address = webAddress(service, path, items);
    if (!address) {
        log(QStringLiteral("not the address of a service: ") + service);
        settle(std::nullopt);
        return;
    }
    HttpRequest outgoing;
    outgoing.url = *address;
    outgoing.headers = {{"User-Agent", "Pellar/1.0 (https://pellar.orvalen.com)"}};
    outgoing.timeout = timeoutSeconds;
    log(QStringLiteral("GET %1 ").arg(kind) + address->toString(QUrl::FullyEncoded));
    _inflightTask =
        _http.send(outgoing, _lookup.get(), [this, kind, request, handler](const HttpReply& reply) {
            if (reply.hasFailed()) {
                log(kind + QStringLiteral(" ERROR: ") + reply.failure);
            }
            log(QStringLiteral("%1 status=%2 bytes=%3").arg(kind).arg(reply.status).arg(reply.body.size()));
            (this->*handler)(request, reply);
        });
}

void LyricsService::keep(const LyricsRequest& request, const Lyrics& lyrics)
{
    _cache.insert(request.key(), lyrics);
    settle(lyrics);
}

void LyricsService::settle(const std::optional<Lyrics>& lyrics)
{
    _current = lyrics;
    _isLoading = false;
}

void LyricsService::flush()
{
    log(QStringLiteral("auth changed — flushing cache, refetching active"));
    _cache.clear();
    if (const auto request = _lastRequest) {
        fetch(request->title, request->artist, request->album);
    }
}
