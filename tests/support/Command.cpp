#include "support/Command.h"

#include <QDebug>
#include <QProcess>

QString output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(10000)) {
        qWarning().noquote() << program << arguments.join(u' ') << "does not end";
        return QStringLiteral("?");
    }
    if (process.exitCode() != 0) {
        return QStringLiteral("?");
    }
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}
