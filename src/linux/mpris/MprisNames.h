#pragma once

#include <QLoggingCategory>

/// Logs what players do wrong; what they refuse to do is at info level.
Q_DECLARE_LOGGING_CATEGORY(mprisLog)

namespace Mpris {

inline const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
inline const QString rootInterface = QStringLiteral("org.mpris.MediaPlayer2");
inline const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
inline const QString trackListInterface = QStringLiteral("org.mpris.MediaPlayer2.TrackList");

} // namespace Mpris
