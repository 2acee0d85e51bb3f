#pragma once

#include <QString>

/// The identifiers by which applications are recognised.
namespace BundleId {

inline const QString music = QStringLiteral("com.apple.Music");
inline const QString spotify = QStringLiteral("com.spotify.client");

} // namespace BundleId
