#pragma once

#include "platform/MediaPlayers.h"

/// The player that gets a media key which no program has grabbed: the one that began to play last. When none
/// plays, it is the one addressed last (by its id), which the key has just paused, else the one in no role
/// that played last: Music and Spotify, when they rest, are not what the key is meant for. Null when there is
/// none.
const MediaPlayer* mediaKeyTarget(const QList<MediaPlayer>& players, const QString& addressed);
