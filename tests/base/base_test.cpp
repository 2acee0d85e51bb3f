#include "base/DebugLog.h"
#include "base/Decimal.h"
#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "base/SerialQueue.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <limits>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

class BaseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsesDecimal()
    {
        QCOMPARE(parseDecimal(u"+215.5"_s), 215.5);
        QCOMPARE(parseDecimal(u"-1.5e2"_s), -150.0);
        for (const char* none : {"", " 1", "1\t", "12,5", "12s", "+-1", "nan", "inf", "1e999", "٣"}) {
            QVERIFY2(parseDecimal(QString::fromUtf8(none)) == 0, none);
        }
    }

    void writesDecimal()
    {
        const QList<std::pair<double, QString>> rows = {
            {42.5, u"42.5"_s},     {90, u"90.0"_s},
            {-1.25, u"-1.25"_s},   {100000, u"100000.0"_s},
            {0.0001, u"0.0001"_s}, {9.9e-5, u"9.9e-05"_s},
            {0, u"0.0"_s},         {1e15, u"1000000000000000.0"_s},
            {1e16, u"1.0e+16"_s},  {187.99999999999997, u"187.99999999999997"_s}};
        for (const auto& [value, text] : rows) {
            QCOMPARE(decimalText(value), text);
            QCOMPARE(parseDecimal(text), value);
        }
        QCOMPARE(decimalText(std::numeric_limits<double>::infinity()), u"inf"_s);
    }

    void notifies()
    {
        NotificationCenter center;
        QObject context;
        QStringList heard;
        center.observe(u"a"_s, &context, [&](const QVariantMap& info) {
            heard << u"first "_s + info[u"k"_s].toString();
            // Registered while posting: from the next time on.
            center.observe(u"a"_s, &context, [&](const QVariantMap&) { heard << u"late"_s; });
        });
        center.observe(u"a"_s, &context, [&](const QVariantMap&) { heard << u"second"_s; });
        center.post(u"b"_s);
        center.post(u"a"_s, {{u"k"_s, 1}});
        QCOMPARE(heard, QStringList({u"first 1"_s, u"second"_s}));
        center.post(u"a"_s);
        QCOMPARE(heard.last(), u"late"_s);

        auto dying = std::make_unique<QObject>();
        center.observe(u"c"_s, &context, [&](const QVariantMap&) { dying.reset(); });
        center.observe(u"c"_s, dying.get(), [&](const QVariantMap&) { heard << u"too late"_s; });
        center.post(u"c"_s);
        center.post(u"c"_s);
        QCOMPARE(heard.last(), u"late"_s);
    }

    void runsSerially()
    {
        QList<int> order;
        {
            SerialQueue queue(u"test"_s);
            for (int i = 0; i < 500; ++i) {
                queue.async([&order, i] { order << i; }); // unguarded: only safe if nothing overlaps
            }
        }
        QCOMPARE(order.size(), 500);
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

    void firesWhileContextLives()
    {
        EventLoop loop;
        auto context = std::make_unique<QObject>();
        int once = 0;
        int often = 0;
        loop.after(0, context.get(), [&] { ++once; });
        QCOMPARE(once, 0); // never inside the call
        auto timer = loop.every(0.005, context.get(), [&] { ++often; });
        QTRY_VERIFY(once == 1 && often >= 3);
        timer.reset();
        const int stopped = often;
        bool isLater = false;
        loop.after(0.05, this, [&] { isLater = true; });
        loop.after(0.02, context.get(), [&] { ++once; });
        context.reset();
        QTRY_VERIFY(isLater);
        QVERIFY(often == stopped && once == 1);
    }

    void logsLines()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"log"_s));
        const mode_t before = umask(0);
        for (const bool isNew : {true, false}) {
            DebugLog(file.fileName()).write(u"naïve 夜"_s);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            file.close();
            const QString line = u"\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\+0000\\] naïve 夜\\n"_s;
            const auto all = QRegularExpression::anchoredPattern(line.repeated(isNew ? 1 : 2));
            QVERIFY2(QRegularExpression(all).match(text).hasMatch(), qPrintable(text));
            struct stat status = {};
            QCOMPARE(::stat(QFile::encodeName(file.fileName()).constData(), &status), 0);
            QCOMPARE(status.st_mode & 0777U, 0600U);
            file.setPermissions(QFile::ReadOther | QFile::ReadOwner | QFile::WriteOwner); // to be narrowed
        }
        umask(before);
        const QDateTime summer(QDate(2026, 7, 1), QTime(1, 2, 3), QTimeZone("Asia/Tokyo"));
        QCOMPARE(DebugLog::line(summer, u"a\r\nb\u2028c"_s), u"[2026-06-30 16:02:03 +0000] a  b c\n"_s);
    }

    void logsToNoOtherFile()
    {
        using Place = int (*)(const char* path, const char* target); // 0 when it is there
        for (const Place place : {Place([](auto path, auto target) { return ::symlink(target, path); }),
                                  Place([](auto path, auto target) { return ::link(target, path); }),
                                  Place([](auto path, auto) { return ::mkfifo(path, 0600); }),
                                  Place([](auto path, auto) { return ::mkdir(path, 0700); })}) {
            const QTemporaryDir folder;
            QFile target(folder.filePath(u"target"_s));
            QVERIFY(target.open(QIODevice::ReadWrite));
            const QString path = folder.filePath(u"log"_s);
            QCOMPARE(place(qPrintable(path), qPrintable(target.fileName())), 0);
            DebugLog log(path);
            log.write(u"line"_s);
            log.flush(); // a pipe without a reader must not hold it up
            QCOMPARE(target.readAll(), QByteArray());
        }
    }
};

QTEST_GUILESS_MAIN(BaseTest)
#include "base_test.moc"
