#pragma once

#include "prefs/UpNextTrack.h"

#include <QList>

#include <optional>

/// Reads the reply of the up-next listing, "2|||Title|||Artist###3|||…". Rows without an index or with fewer
/// than three fields are left out; the others keep their order.
QList<UpNextTrack> parseUpNextReply(const std::optional<QString>& reply);
