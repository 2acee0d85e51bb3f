#pragma once

#include "base/HttpClient.h"
#include "base/WebAddress.h"
#include "lyrics/AppleMusicLyricsService.h"
#include "lyrics/LocalLyrics.h"
#include "lyrics/Lyrics.h"

#include <QHash>
#include <QObject>
#include <QProperty>

#include <functional>
#include <memory>
#include <optional>

class NotificationCenter;
class RunLoop;
class UserDefaults;

/// Finds the lyrics of the track that is playing: on this machine, where nobody need be asked for them; else
/// from Apple Music, else from the lyrics service by exact match, else by its search. Every result, and that
/// there was none, is remembered for the run. Main thread.
class LyricsService : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged BINDABLE bindableIsLoading)

public:
    /// Asks Apple Music as `AppleMusicLyricsService::fetch` does.
    using AppleMusic =
        std::function<void(const LyricsRequest&, QObject* context, AppleMusicLyricsService::Completion)>;

    LyricsService(RunLoop& runLoop, NotificationCenter& notifications, const UserDefaults& defaults,
                  const Workspace& workspace, AppleMusic appleMusic);
    static LyricsService& shared();

    /// Starts or answers a lookup and returns at once. A lookup under way is given up.
    void fetch(const QString& title, const QString& artist, const QString& album);

    /// None while loading, and without a title or an artist unless this machine has them; empty lyrics when
    /// there are none to be had.
    std::optional<Lyrics> current() const { return _current; }

    bool isLoading() const { return _isLoading; }
    QBindable<bool> bindableIsLoading() const { return &_isLoading; }

Q_SIGNALS:
    void currentChanged();
    void isLoadingChanged();

private:
    using Handler = void (LyricsService::*)(const LyricsRequest&, const HttpReply&);

    void findLocally(const LyricsRequest& request, std::function<void()> otherwise);
    void askAppleMusic(const LyricsRequest& request);
    void fetchExact(const LyricsRequest& request);
    void readExact(const LyricsRequest& request, const HttpReply& reply);
    void fetchFuzzy(const LyricsRequest& request);
    void readFuzzy(const LyricsRequest& request, const HttpReply& reply);
    void get(const QString& kind, const QString& path, const QueryItems& items, const LyricsRequest& request,
             Handler handler);
    void keep(const LyricsRequest& request, const Lyrics& lyrics);
    void settle(const std::optional<Lyrics>& lyrics);
    void flush();

    const UserDefaults& _defaults;
    AppleMusic _appleMusic;
    LocalLyrics _local;
    HttpClient _http;
    QHash<QString, Lyrics> _cache; ///< by request key; empty lyrics where there are none
    std::unique_ptr<HttpCall> _inflightTask;
    std::optional<LyricsRequest> _lastRequest;
    std::unique_ptr<QObject> _lookup; ///< the lookup under way; what comes for an earlier one is dropped
    Q_OBJECT_BINDABLE_PROPERTY(LyricsService, std::optional<Lyrics>, _current, &LyricsService::currentChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(LyricsService, bool, _isLoading, false,
                                         &LyricsService::isLoadingChanged)
};
