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
};
