#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// What came of reading a file.
struct LyricsFile {
    std::optional<QString> text; ///< none when there is no file or it is not to be read
    QString complaint;           ///< why a file that is there is not to be read; else empty
};

/// Where the lyrics of a song would be: in the file of the song's name that ends in ".lrc". None when the
/// song is no file of this machine.
std::optional<QString> lyricsPath(const QUrl& song);

/// Reads a plain file of text in UTF-8, or in what the mark at its beginning says, of less than a megabyte.
/// May block for as long as the file's disk does.
LyricsFile readLyricsFile(const QString& path);
