#include "support/Command.h"

#include <QProcess>

QString output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(10000) || process.exitCode() != 0) {
        return QStringLiteral("?");
    }
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}
