#include "support/Command.h"

#include <QDebug>
#include <QProcess>

QString output(const QString& program, const QStringList& arguments, int limit)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(limit)) {
        qWarning().noquote() << program << arguments.join(u' ') << "does not end";
        process.kill();
        process.waitForFinished();
        return QStringLiteral("?");
    }
    if (process.exitCode() != 0) {
        return QStringLiteral("?");
    }
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString run(const QString& commandLine)
{
    QStringList words = QProcess::splitCommand(commandLine);
    const QString program = words.takeFirst();
    return output(program, words);
}
