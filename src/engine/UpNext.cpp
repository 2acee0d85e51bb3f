#include "engine/NowPlayingService.h"
#include "engine/PlayerScripts.h"
#include "engine/UpNextReply.h"

namespace {

constexpr double playSettling = 0.4; // seconds until the player has had time to obey

} // namespace

QList<UpNextTrack> NowPlayingService::upNextTracks(int limit)
{
    switch (commandTarget()) {
    case Player::appleMusic:
        return parseUpNextReply(runScript(PlayerScripts::upNextListing(limit)));
    case Player::spotify:
        return _neighbours.cachedSpotifyQueue ? _neighbours.cachedSpotifyQueue() : QList<UpNextTrack>();
    case Player::systemAudio:
    case Player::none:
        break;
    }
    return {};
}

void NowPlayingService::playUpNextTrack(qint64 playlistIndex)
{
    if (commandTarget() == Player::appleMusic) {
        runScript(PlayerScripts::playPlaylistTrack(playlistIndex));
        refreshLater(playSettling);
    }
}

void NowPlayingService::runScriptIfMusic(const QString& statement)
{
    if (commandTarget() == Player::appleMusic) {
        runScript(PlayerScripts::musicStatement(statement));
    }
}
