#pragma once

#include <QObject>
#include <QString>

/// Where the now-playing state comes from.
enum class Player { appleMusic, spotify, systemAudio, none };

/// The case name, as log lines and the recently played list write it.
QString playerName(Player player);
