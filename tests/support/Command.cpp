#include "support/Command.h"

#include "support/Program.h"

#include <QtTest>

QString output(const QString& program, const QStringList& arguments, int limit)
{
    Program process(program, arguments);
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, limit)) {
        qWarning().noquote() << program << arguments.join(u' ') << "does not end";
        return QStringLiteral("?");
    }
    const bool isGood = process.error() == QProcess::UnknownError && process.exitCode() == 0;
    return isGood ? QString::fromUtf8(process.readAllStandardOutput()).trimmed() : QStringLiteral("?");
}

QString run(const QString& commandLine)
{
    const QStringList words = QProcess::splitCommand(commandLine);
    return output(words.constFirst(), words.mid(1));
}
