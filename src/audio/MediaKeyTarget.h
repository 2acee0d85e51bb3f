#pragma once

#include "platform/MediaPlayers.h"

/// Whom a media key reaches when no program has grabbed it: the player that began to play last. When none
/// plays, the one that was addressed last (by its id), which has obeyed, else the one that played last of
/// those in no role: Music and Spotify, at rest, are not what sounds. Null when there is nobody.
const MediaPlayer* mediaKeyTarget(const QList<MediaPlayer>& players, const QString& addressed);
