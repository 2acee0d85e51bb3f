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

QString pactl(const QString& words)
{
    return output(QStringLiteral("pactl"), words.split(u' '));
}

QString xdotool(const QString& words)
{
    return output(QStringLiteral("xdotool"), words.split(u' '));
}
