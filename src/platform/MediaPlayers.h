#pragma once

#include "base/Uptime.h"
#include "platform/PlayerRole.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// A program on this desktop that plays something, a browser's page too: what the choice among them depends
/// on.
struct MediaPlayer {
    QString id;              ///< the same for as long as the player runs
    QStringList names = {};  ///< "rhythmbox", or "firefox.instance_1_22"
    bool isReachable = true; ///< it has told its state and may be talked to
    bool isPlaying = false;
    Uptime playingSince = Uptime::distantPast(); ///< if it plays
    Uptime lastPlayed = Uptime::distantPast();   ///< the distant past for one that never has
    QList<PlayerRole> roles = {};                ///< that it takes
    std::optional<qint64> processId = {};        ///< as its windows have it; none when it is not known
};

enum class MediaCommand { playPause, next, previous };

/// Every player on this desktop.
class MediaPlayers
{
public:
    MediaPlayers() = default;
    virtual ~MediaPlayers() = default;
    MediaPlayers(const MediaPlayers&) = delete;
    MediaPlayers& operator=(const MediaPlayers&) = delete;

    /// In the order in which they came.
    virtual QList<MediaPlayer> all() const = 0;

    /// Sends the command without waiting. Nothing happens when the player has gone.
    virtual void send(const QString& id, MediaCommand command) = 0;
};
