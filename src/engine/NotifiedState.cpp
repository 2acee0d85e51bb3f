#include "engine/NowPlayingService.h"
#include "platform/BundleId.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <cmath>

namespace {

constexpr double artworkDelay = 0.18;      // seconds; a burst of skips looks up only where it ends
constexpr double noticeableDuration = 0.5; // seconds
constexpr double millisecondsASecond = 1000;

QString text(const QVariantMap& userInfo, const QString& key, const QString& otherwise)
{
    const QVariant value = userInfo.value(key);
    return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : otherwise;
}

double number(const QVariantMap& userInfo, const QString& key, double otherwise)
{
    bool isNumber = false;
    const double value = userInfo.value(key).toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? value : otherwise;
}

} // namespace

void NowPlayingService::handlePlayerNotification(Player player, const QVariantMap& userInfo)
{
    const Uptime now = _platform.runLoop.uptime();
    if (userInfo.isEmpty() || !isEnabledSource(player) || now < _systemAudioStickUntil) {
        return;
    }
    const QString state = text(userInfo, QStringLiteral("Player State"), QStringLiteral("Stopped"));
    const bool isStopped = state == QStringLiteral("Stopped");
    if (isStopped || state == QStringLiteral("Paused")) {
        _lastSourcePauseTime = now;
        _systemAudioEngagedUntil = Uptime::distantPast();
    }
    if (isStopped) {
        if (_activePlayer == player) {
            _isPlaying = false;
            followPlace(position());
        }
        return;
    }
    const Player other = player == Player::appleMusic ? Player::spotify : Player::appleMusic;
    if (_activePlayer == other && _isPlaying) {
        return;
    }
    const QString durationKey =
        player == Player::appleMusic ? QStringLiteral("Total Time") : QStringLiteral("Duration");
    const double duration =
        number(userInfo, durationKey, _duration * millisecondsASecond) / millisecondsASecond;

    Showing next = showing();
    next.activePlayer = player;
    next.title = text(userInfo, QStringLiteral("Name"), _title);
    next.artist = text(userInfo, QStringLiteral("Artist"), _artist);
    next.album = text(userInfo, QStringLiteral("Album"), _album);
    if (std::abs(duration - _duration) > noticeableDuration) {
        next.duration = duration;
    }
    next.isPlaying = state == QStringLiteral("Playing");
    const QString key = trackKey(next.title, next.artist);
    const bool isNewTrack = key != _lastTrackKey;
    if (isNewTrack) {
        next.elapsed =
            player == Player::appleMusic ? 0 : number(userInfo, QStringLiteral("Playback Position"), 0);
    }
    publish(next, isNewTrack ? next.elapsed : position());
    const QString artworkUrl = text(userInfo, QStringLiteral("Artwork URL"), QString());
    followArtworkOwner(player == Player::appleMusic ? _platform.workspace.artworkAddress(BundleId::music)
                                                    : artworkUrl);
    if (!isNewTrack) {
        return;
    }
    beginTrack(key, player);
    if (player == Player::appleMusic) {
        _platform.runLoop.after(artworkDelay, this, [this] { fetchAppleMusicArtwork(); });
    } else {
        fetchSpotifyArtwork(artworkUrl);
    }
}
