#pragma once

#include <QString>

/// The track whose lyrics are asked for.
struct LyricsRequest {
    QString title;
    QString artist;
    QString album;

    /// What lyrics are remembered under: requests that differ in letter case alone share a key.
    QString key() const { return QString(title + u'|' + artist + u'|' + album).toLower(); }

    friend bool operator==(const LyricsRequest&, const LyricsRequest&) = default;
};
