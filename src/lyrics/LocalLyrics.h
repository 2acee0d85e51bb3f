#pragma once

#include "lyrics/Lyrics.h"
#include "lyrics/LyricsRequest.h"

#include <functional>

class QObject;
class QUrl;
class RunLoop;
class Workspace;

/// Lyrics that are on this machine already: in a file beside the song's own, else in what the player tells of
/// its track.
class LocalLyrics
{
public:
    using Completion = std::function<void(const std::optional<Lyrics>&)>;

    LocalLyrics(RunLoop& runLoop, const Workspace& workspace) : _runLoop(runLoop), _workspace(workspace) {}

    /// Looks for the lyrics of a track that a player is at. `completion` gets them, or nothing, later on the
    /// main thread, unless `context` is gone by then. A file that cannot be read within two seconds counts as
    /// none.
    void find(const LyricsRequest& request, QObject* context, Completion completion) const;

private:
    void readBeside(const QUrl& song, QObject* context,
                    std::function<void(const std::optional<QString>& text)> completion) const;

    RunLoop& _runLoop;
    const Workspace& _workspace;
};
