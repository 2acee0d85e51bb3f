#include "audio/AudioSourceManager.h"
#include "base/DebugLog.h"
#include "base/Decimal.h"
#include "engine/NowPlayingService.h"
#include "engine/PlayerScripts.h"
#include "platform/BundleId.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "prefs/RecentlyPlayedManager.h"

void NowPlayingService::refresh()
{
    const bool musicRunning = isEnabledAndRunning(Player::appleMusic);
    const bool spotifyRunning = isEnabledAndRunning(Player::spotify);
    const bool isStuck = _platform.runLoop.uptime() < _systemAudioStickUntil;
    dlog(QStringLiteral("refresh: srcs=%1 am=%2 sp=%3 active=%4 stuck=%5")
             .arg(_sources.enabledSources().toInt())
             .arg(boolText(musicRunning), boolText(spotifyRunning), playerName(_activePlayer),
                  boolText(isStuck)));

    if (isStuck && isEnabledSource(Player::systemAudio)) {
        dlog(QStringLiteral("refresh: -> systemAudio (stuck)"));
        enterSystemAudioMode();
        return;
    }
    if (followActivePlayer(musicRunning, spotifyRunning) ||
        followPlayers(musicRunning, spotifyRunning, true) || followSystemAudio() ||
        followPlayers(musicRunning, spotifyRunning, false)) {
        return;
    }
    dlog(QStringLiteral("refresh: clearing state"));
    if (_activePlayer != Player::none) {
        clearState();
    }
}

/// The player on show keeps its place while it plays.
bool NowPlayingService::followActivePlayer(bool musicRunning, bool spotifyRunning)
{
    const Player active = _activePlayer;
    const bool isRunning =
        (active == Player::appleMusic && musicRunning) || (active == Player::spotify && spotifyRunning);
    if (!isRunning || !pollPlayer(active, true)) {
        return false;
    }
    dlog(QStringLiteral("refresh: stuck on %1 (playing)").arg(playerName(active)));
    return true;
}

bool NowPlayingService::followPlayers(bool musicRunning, bool spotifyRunning, bool playingOnly)
{
    const auto follow = [&](Player player, bool isRunning) {
        if (!isRunning || !pollPlayer(player, playingOnly)) {
            return false;
        }
        dlog(
            QStringLiteral("refresh: -> %1 (%2)")
                .arg(playerName(player), playingOnly ? QStringLiteral("playing") : QStringLiteral("paused")));
        return true;
    };
    return follow(Player::appleMusic, musicRunning) || follow(Player::spotify, spotifyRunning);
}

bool NowPlayingService::pollPlayer(Player player, bool playingOnly)
{
    const auto reply = runScript(PlayerScripts::status(player));
    const auto status = reply ? parseStatusReply(*reply, player) : std::nullopt;
    if (!status || (playingOnly && !status->isPlaying)) {
        return false;
    }
    adopt(player, *status);
    return true;
}

void NowPlayingService::adopt(Player player, const PlayerStatus& status)
{
    publish({.title = status.title,
             .artist = status.artist,
             .album = status.album,
             .duration = status.duration,
             .elapsed = status.position,
             .isPlaying = status.isPlaying,
             .activePlayer = player});
    followArtworkOwner(player == Player::appleMusic ? _platform.workspace.artworkAddress(BundleId::music)
                                                    : status.artworkUrl.value_or(QString()));
    if (const QString key = trackKey(_title, _artist); key != _lastTrackKey) {
        beginTrack(key, player);
    }
    if (player == Player::appleMusic) {
        fetchAppleMusicArtwork();
    } else if (status.artworkUrl) {
        fetchSpotifyArtwork(*status.artworkUrl);
    }
}

QString NowPlayingService::trackKey(const QString& title, const QString& artist)
{
    return title + u'-' + artist;
}

void NowPlayingService::beginTrack(const QString& key, Player source)
{
    _lastTrackKey = key;
    _recentlyPlayed.record(_title, _artist, _album, playerName(source));
}
