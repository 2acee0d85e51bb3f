#pragma once

#include "platform/PlayerRole.h"

#include <QObject>
#include <QVariantMap>

class MprisPlayer;
class NotificationCenter;
class PlayerRoster;

/// Announces what "Music" and "Spotify" do, in the words in which these players announce it themselves.
class PlayerNotifier : public QObject
{
    Q_OBJECT

public:
    /// Posts "com.apple.Music.playerInfo" and "com.spotify.client.PlaybackStateChanged" to `center`.
    PlayerNotifier(PlayerRoster& roster, NotificationCenter& center);

    /// The user info of a player's notification: "Player State", "Name", "Artist", "Album", then for Music
    /// "Total Time" (ms), for Spotify "Duration" (ms), "Playback Position" (s) and "Artwork URL".
    static QVariantMap userInfo(PlayerRole role, const MprisPlayer& player);
};
