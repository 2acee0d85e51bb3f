#pragma once

#include "base/SerialQueue.h"

#include <QString>

class QDateTime;

/// A log file that every line is appended to on a queue of its own. Failures are ignored: the log must never
/// be the reason why something else fails.
class DebugLog
{
public:
    explicit DebugLog(QString path);

    /// The log that `dlog` writes, "/tmp/pellar_debug.log".
    static DebugLog& shared();

    /// Appends one line, stamped with the time of the call. The file is made, readable by its owner alone, if
    /// it is not there. Links, files of other users and anything that is no plain file are left untouched.
    void write(const QString& message);

    /// Writes to another file from the next line on.
    void setPath(const QString& path);

    /// Blocks until every line so far is in the file.
    void flush();

    /// "[2026-01-31 18:05:09 +0000] message\n", the time in UTC. Breaks of the line within become spaces.
    static QString line(const QDateTime& time, const QString& message);

private:
    QString _path; // outlives the queue, whose last lines still go there
    SerialQueue _queue{QStringLiteral("com.orvalen.pellar.dlog")};
};

/// Appends one line to the shared debug log. Any thread.
void dlog(const QString& message);
