#pragma once

#include <QString>

#include <optional>

/// The two players that the program knows by name.
enum class PlayerRole { music, spotify };

/// "com.apple.Music" or "com.spotify.client".
QString bundleId(PlayerRole role);
std::optional<PlayerRole> roleWithBundleId(const QString& bundleId);
