#include "accounts/Resources.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringDecoder>

std::optional<QString> resourcePath(const QString& name)
{
    const QString shared =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/pellar/") + name;
    if (QFileInfo(shared).isFile()) {
        return QFileInfo(shared).canonicalFilePath();
    }
    const QString path =
        QStandardPaths::locate(QStandardPaths::GenericDataLocation, QStringLiteral("pellar/") + name);
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

std::optional<QString> readText(const QString& path)
{
    constexpr qint64 mostBytes = 1'048'576;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > mostBytes) {
        return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(file.readAll());
    return decoder.hasError() ? std::nullopt : std::optional(text);
}
