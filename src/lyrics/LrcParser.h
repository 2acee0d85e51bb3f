#pragma once

#include "lyrics/SyncedLyric.h"

/// Reads LRC text, lines that begin with time tags such as "[01:02.50]", in the order of time. A line with
/// several tags comes several times, lines without one are left out. Lines end in a line feed; a carriage
/// return before it is part of the same character, which ends no line.
QList<SyncedLyric> parseSynced(const QString& lrc);
