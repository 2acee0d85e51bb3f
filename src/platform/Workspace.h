#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <optional>

/// A program with a user interface.
struct RunningApplication {
    std::optional<qint64> processId;
    std::optional<QString> bundleId;
};

/// What a player offers beyond playing.
struct PlayerAbilities {
    bool canRate = false;       ///< tracks can be loved
    bool canListTracks = false; ///< its list of tracks can be read
};

/// Where a player is in its track at the moment.
struct PlaybackPosition {
    double seconds = 0; ///< from the start of the track; below 0 while that has yet to begin
    double rate = 0;    ///< track seconds that pass in a second; 0 while it stands still
};

/// The track that a player is at, as the player tells of it.
struct PlayerTrack {
    QString title;
    QString artist = {};
    QString album = {};
    QUrl location = {};  ///< of its file or stream; empty when unknown
    QString lyrics = {}; ///< its text, with times or without; empty when the player has none to hand out
};

/// The applications that run on this desktop, by bundle identifier.
class Workspace : public QObject
{
    Q_OBJECT

public:
    /// Whether at least one running application has this bundle identifier.
    virtual bool isRunning(const QString& bundleId) const = 0;

    /// The address of the current track's cover as a running player gives it: of the web, of a file, or with
    /// the image in it. Empty when the player gives none.
    virtual QString artworkAddress(const QString& bundleId) const = 0;

    /// None when no such player runs, or it is at no track.
    virtual std::optional<PlayerTrack> playerTrack(const QString& bundleId) const = 0;

    /// As exactly as the desktop knows it; none when no such player runs or its place is unknown.
    virtual std::optional<PlaybackPosition> playbackPosition(const QString& bundleId) const = 0;

    /// Has a player asked where it is, unless that was done within the last second. Players may halt for a
    /// moment without a word, as when a network is slow.
    virtual void checkPosition(const QString& bundleId) = 0;

    /// The application that has the keyboard; none when none has.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    /// None at all when no such player runs.
    virtual PlayerAbilities abilities(const QString& bundleId) const = 0;

    /// Opens an address with the desktop's program for it. False when none could be started.
    virtual bool open(const QUrl& url) = 0;

Q_SIGNALS:
    void applicationLaunched(const QString& bundleId);
    void applicationTerminated(const QString& bundleId);

    /// A player has changed in a way that its notifications leave out: it jumped within its track, as when
    /// the user seeks in the player's own window, it has stopped, another one has taken its role, its cover
    /// has come, or it plays another track of the same name.
    void playerOutdated(const QString& bundleId);

    /// A player is elsewhere in its track than its last place and rate would have it, if only by a little, or
    /// its rate is another one.
    void playerMoved(const QString& bundleId);
};
