#pragma once

#include "lyrics/LyricsRequest.h"
#include "lyrics/SyncedLyric.h"

#include <functional>

class QObject;
class RunLoop;

/// Word-timed lyrics from Apple Music. The source is switched off: it has no lyrics for any track.
class AppleMusicLyricsService
{
public:
    static constexpr bool isEnabled = false;

    using Completion = std::function<void(const std::optional<QList<SyncedLyric>>&)>;

    explicit AppleMusicLyricsService(RunLoop& runLoop) : _runLoop(runLoop) {}
    static AppleMusicLyricsService& shared();

    /// Asks for a track's lines. `completion` gets them, or nothing, later on the main thread, unless
    /// `context` is gone by then.
    void fetch(const LyricsRequest& request, QObject* context, Completion completion);

    /// Reads a TTML document into lines with timed words, in its order. None, and a log line, when it is no
    /// well-formed XML or its entities grow out of proportion; none when it has no lines. Nothing that the
    /// document refers to is loaded.
    static std::optional<QList<SyncedLyric>> parseTTML(const QString& ttml);

private:
    RunLoop& _runLoop;

    /// The code of the user's storefront once it is learned; not before the source is on.
    [[maybe_unused]] std::optional<QString> _cachedStorefront;
};
