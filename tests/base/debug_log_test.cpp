#include "base/DebugLog.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class DebugLogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesLines();
    void narrowsPermissions();
    void touchesNothingElse_data();
    void touchesNothingElse();

private:
    static QByteArray content(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    static mode_t mode(const QString& path)
    {
        struct stat status = {};
        return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777U : 0;
    }
};

void DebugLogTest::writesLines()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    QFile(path).remove();
    const mode_t before = umask(0);
    {
        DebugLog log(path);
        log.write(QStringLiteral("refresh: naïve 夜"));
        log.write(QStringLiteral("second"));
    }
    umask(before);
    const QByteArrayList lines = content(path).split('\n');
    QCOMPARE(lines.size(), 3);
    const QRegularExpression pattern(
        QStringLiteral("^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\+0000\\] refresh: naïve 夜$"));
    QVERIFY(pattern.match(QString::fromUtf8(lines[0])).hasMatch());
    QVERIFY(lines[1].endsWith("] second"));
    QCOMPARE(mode(path), mode_t(0600));
    const QDateTime summer(QDate(2026, 7, 1), QTime(1, 2, 3), QTimeZone("Asia/Tokyo"));
    QCOMPARE(DebugLog::line(summer, QStringLiteral("m")), QStringLiteral("[2026-06-30 16:02:03 +0000] m\n"));
}

void DebugLogTest::narrowsPermissions()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("kept\n");
    file.close();
    ::chmod(QFile::encodeName(path).constData(), 0666);
    DebugLog(path).write(QStringLiteral("added"));
    QVERIFY(content(path).startsWith("kept\n["));
    QCOMPARE(mode(path), mode_t(0600));
}

void DebugLogTest::touchesNothingElse_data()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"link", "hard link", "pipe", "folder", "no folder above"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void DebugLogTest::touchesNothingElse()
{
    QFETCH(QString, kind);
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("target"));
    QFile file(target);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("precious");
    file.close();
    QString path = folder.filePath(QStringLiteral("log"));
    const QByteArray name = QFile::encodeName(path);
    if (kind == QStringLiteral("link")) {
        QVERIFY(QFile::link(target, path));
    } else if (kind == QStringLiteral("hard link")) {
        QCOMPARE(::link(QFile::encodeName(target).constData(), name.constData()), 0);
    } else if (kind == QStringLiteral("pipe")) {
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    } else if (kind == QStringLiteral("folder")) {
        QCOMPARE(::mkdir(name.constData(), 0700), 0);
    } else {
        path = folder.filePath(QStringLiteral("gone/log"));
    }
    DebugLog log(path);
    log.write(QStringLiteral("line"));
    log.flush(); // a pipe without a reader must not hold it up
    QCOMPARE(content(target), QByteArray("precious"));
    QVERIFY(kind != QStringLiteral("no folder above") || !QFileInfo::exists(path));
}

QTEST_GUILESS_MAIN(DebugLogTest)
#include "debug_log_test.moc"
