#include "linux/mpris/PlayerNotifier.h"

#include "base/NotificationCenter.h"
#include "linux/mpris/MprisPlayer.h"
#include "linux/mpris/PlayerRoster.h"

#include <cmath>

namespace {

QString stateText(const MprisPlayer::State& state)
{
    // A player that plays nothing it could name is between two tracks, or idle.
    if (state.track.isBlank() || state.status == MprisPlayer::Status::stopped) {
        return QStringLiteral("Stopped");
    }
    return state.status == MprisPlayer::Status::playing ? QStringLiteral("Playing")
                                                        : QStringLiteral("Paused");
}

} // namespace

PlayerNotifier::PlayerNotifier(PlayerRoster& roster, NotificationCenter& center)
{
    connect(&roster, &PlayerRoster::changed, this, [&roster, &center](PlayerRole role) {
        const QString name = role == PlayerRole::music
                                 ? QStringLiteral("com.apple.Music.playerInfo")
                                 : QStringLiteral("com.spotify.client.PlaybackStateChanged");
        center.post(name, userInfo(role, *roster.player(role)));
    });
}

QVariantMap PlayerNotifier::userInfo(PlayerRole role, const MprisPlayer& player)
{
    const MprisTrack& track = player.state().track;
    // Unknown values are sent as empty ones: a key left out means "as before", which was another track.
    QVariantMap info = {
        {QStringLiteral("Player State"), stateText(player.state())},
        {QStringLiteral("Name"), track.title},
        {QStringLiteral("Artist"), track.artist},
        {QStringLiteral("Album"), track.album},
    };
    const auto milliseconds = static_cast<qlonglong>(std::llround(track.length.value_or(0) * 1000));
    if (role == PlayerRole::music) {
        info.insert(QStringLiteral("Total Time"), milliseconds);
    } else {
        info.insert(QStringLiteral("Duration"), milliseconds);
        info.insert(QStringLiteral("Playback Position"), player.position());
        info.insert(QStringLiteral("Artwork URL"), track.artworkUrl);
    }
    return info;
}
