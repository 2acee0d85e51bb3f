#include "lyrics/LocalLyrics.h"

#include "base/DebugLog.h"
#include "base/RunLoop.h"
#include "lyrics/LrcParser.h"
#include "lyrics/LyricsFile.h"
#include "platform/BundleId.h"
#include "platform/Workspace.h"

#include <QFutureWatcher>
#include <QPromise>

#include <atomic>
#include <memory>
#include <thread>

namespace {

constexpr double longestRead = 2; // seconds
constexpr int mostReaders = 4;
constexpr qsizetype mostCharacters = 1'000'000;

std::atomic<int> readers = 0; // threads that may hang

void log(const QString& message)
{
    dlog(QStringLiteral("Lyrics: ") + message);
}

/// What a player says of the track, if one is at it: it may have gone on to another one.
std::optional<PlayerTrack> tellingTrack(const Workspace& workspace, const LyricsRequest& request)
{
    for (const QString& player : {BundleId::music, BundleId::spotify}) {
        auto track = workspace.playerTrack(player);
        if (track && LyricsRequest{track->title, track->artist, track->album} == request) {
            return track;
        }
    }
    return std::nullopt;
}

/// Lines or a plain text; none when there is nothing to read in it.
std::optional<Lyrics> lyricsIn(QString text, const LyricsRequest& request)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    Lyrics lyrics{.trackTitle = request.title, .artist = request.artist, .synced = parseSynced(text)};
    if (!lyrics.hasSynced()) {
        lyrics.plain = text.trimmed();
    }
    return lyrics.isEmpty() ? std::nullopt : std::optional(lyrics);
}

/// Reads the file in a thread of its own, which nobody waits for: on a network that has gone it may hang for
/// good.
QFuture<LyricsFile> startReading(const QString& path)
{
    QPromise<LyricsFile> promise;
    QFuture<LyricsFile> future = promise.future();
    ++readers;
    std::thread([path, promise = std::move(promise)]() mutable {
        promise.start();
        promise.addResult(readLyricsFile(path));
        promise.finish();
        --readers;
    }).detach();
    return future;
}

} // namespace

void LocalLyrics::find(const LyricsRequest& request, QObject* context, Completion completion) const
{
    const auto track = tellingTrack(_workspace, request);
    if (!track) {
        _runLoop.after(0, context, [completion = std::move(completion)] { completion(std::nullopt); });
        return;
    }
    readBeside(track->location, context,
               [request, told = track->lyrics, completion = std::move(completion)](const auto& text) {
                   auto lyrics = text ? lyricsIn(*text, request) : std::nullopt;
                   if (!lyrics && told.size() < mostCharacters) {
                       lyrics = lyricsIn(told, request);
                   }
                   completion(lyrics);
               });
}

void LocalLyrics::readBeside(const QUrl& song, QObject* context,
                             std::function<void(const std::optional<QString>& text)> completion) const
{
    const auto path = lyricsPath(song);
    if (!path || readers >= mostReaders) {
        _runLoop.after(0, context, [completion = std::move(completion)] { completion(std::nullopt); });
        return;
    }
    // Whichever comes first, the file or the end of patience, takes the watcher with it.
    auto* const watcher = new QFutureWatcher<LyricsFile>(context);
    const auto end = [watcher, path = *path, completion = std::move(completion)](const LyricsFile& file) {
        watcher->disconnect();
        watcher->deleteLater();
        if (!file.complaint.isEmpty()) {
            log(path + QStringLiteral(": ") + file.complaint);
        }
        completion(file.text);
    };
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher,
                     [watcher, end] { end(watcher->result()); });
    watcher->setFuture(startReading(*path));
    _runLoop.after(longestRead, watcher, [watcher, end] {
        if (!watcher->isFinished()) { // else the text is there and about to be taken, or its views take long
            end({{}, QStringLiteral("takes too long to read")});
        }
    });
}
