#pragma once

#include "engine/Player.h"

#include <QStringList>

/// The script texts that read and drive the players. A `player` is `appleMusic` or `spotify`.
namespace PlayerScripts {

/// "Music" or "Spotify", as scripts name the player; empty for a source that has no scripts.
QString applicationName(Player player);

/// Asks for everything the engine shows; see parseStatusReply.
QString status(Player player);

QString playPause(Player player);
QString nextTrack(Player player);
QString previousTrack(Player player);

/// Moves to `seconds` from the start of the track.
QString seek(Player player, double seconds);
QString pauseIfPlaying(Player player);

QString loveMusic();
QString dislikeMusic();

/// Asks for both marks of the current track; see parseReactionReply.
QString reaction();

/// Presses a key in Spotify's own window. A modifier is "command down", "shift down" and so on.
QString spotifyKeystroke(const QString& key, const QStringList& modifiers);

/// Spotify has no command for it: presses the shortcut that saves the track.
QString loveSpotify();

/// Harmless, but needs permission to automate the application.
QString automationProbe(const QString& applicationName);

/// Lists up to `limit` tracks behind the current one; see parseUpNextReply.
QString upNextListing(int limit);

/// Plays the track at a 1-based index of Music's current playlist.
QString playPlaylistTrack(qint64 playlistIndex);

/// Runs one statement against Music and swallows its errors.
QString musicStatement(const QString& statement);

} // namespace PlayerScripts
