#pragma once

#include "base/DebugLog.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

/// Sends the shared debug log to a file of the test's own.
class LogFile
{
public:
    LogFile() { DebugLog::shared().setPath(path()); }
    ~LogFile() { DebugLog::shared().flush(); }

    QString path() const { return _folder.filePath(QStringLiteral("log")); }

    /// The lines since the last call, without their time stamps.
    QStringList take()
    {
        DebugLog::shared().flush();
        QFile file(path());
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        for (QString& line : lines) {
            line = line.section(QStringLiteral("] "), 1);
        }
        return lines.mid(std::exchange(_taken, lines.size()));
    }

private:
    QTemporaryDir _folder;
    qsizetype _taken = 0;
};
