#include "lyrics/LyricsFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QSysInfo>

namespace {

constexpr qint64 mostBytes = 1'000'000;

bool isThisMachine(const QString& host)
{
    return host.isEmpty() || host == QStringLiteral("localhost") ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

/// None for what is no text.
std::optional<QString> decoded(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8));
    const QString text = decoder.decode(bytes);
    return decoder.hasError() || text.contains(QChar::Null) ? std::nullopt : std::optional(text);
}

} // namespace

std::optional<QString> lyricsPath(const QUrl& song)
{
    // A mark that was not escaped would name another file.
    if (song.scheme() != QStringLiteral("file") || !isThisMachine(song.host()) || song.hasQuery() ||
        song.hasFragment()) {
        return std::nullopt;
    }
    const QFileInfo file(song.path(QUrl::FullyDecoded));
    if (!file.isAbsolute() || file.fileName().isEmpty()) {
        return std::nullopt;
    }
    return file.path() + u'/' + file.completeBaseName() + QStringLiteral(".lrc");
}

/// Plain files only: a pipe or a device might never end.
LyricsFile readLyricsFile(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return {};
    }
    QFile file(path);
    if (!info.isFile()) {
        return {{}, QStringLiteral("not a plain file")};
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return {{}, file.errorString()};
    }
    const QByteArray bytes = file.read(mostBytes);
    if (bytes.size() == mostBytes) {
        return {{}, QStringLiteral("too large")};
    }
    const auto text = decoded(bytes);
    return {text, text ? QString() : QStringLiteral("not a text")};
}
