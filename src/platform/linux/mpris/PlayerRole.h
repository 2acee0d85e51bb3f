#pragma once

#include "base/Date.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// The two players that the program knows by name.
enum class PlayerRole { music, spotify };

/// "com.apple.Music" or "com.spotify.client".
QString bundleId(PlayerRole role);
std::optional<PlayerRole> roleWithBundleId(const QString& bundleId);

/// What the choice of a player depends on.
struct PlayerCandidate {
    QStringList suffixes;    ///< bus names without "org.mpris.MediaPlayer2."
    bool isReachable = true; ///< it has told its state and may be talked to
    bool isPlaying = false;
    Date playingSince = Date::distantPast();
    Date lastPlayed = Date::distantPast();
    bool hasRole = false; ///< it takes the role already
};

/// Which of the running players takes a role, as an index. Spotify is any client of that name. Music is the
/// player named by `preferredMusicPlayer`; without a preference it is any player but Spotify, browsers and
/// proxies. Among several, one that answers comes before one that does not; then one that plays, the latest
/// to start before the others; then the one that has played last. Among equals the role stays where it is.
std::optional<size_t> choosePlayer(PlayerRole role, const std::vector<PlayerCandidate>& candidates,
                                   const QString& preferredMusicPlayer);
