#include "linux/settings/PlistUserDefaults.h"
#include "linux/settings/PropertyList.h"

#include <QtTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QString key = u"a key"_s;

bool putFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray plist(const QByteArray& root)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n" +
           root + "\n</plist>\n";
}

QByteArray dict(const QByteArray& value)
{
    return plist("\t<dict>\n\t\t<key>a key</key>\n\t\t" + value + "\n\t</dict>");
}

void expectWarning(const char* pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString::fromLatin1(pattern)));
}

QVariant nested(int depth)
{
    QVariant value = true;
    for (int level = 0; level < depth; ++level) {
        value = level % 2 ? QVariant(QVariantList{value}) : QVariant(QVariantMap{{key, value}});
    }
    return value;
}

} // namespace

class DefaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _folder = std::make_unique<QTemporaryDir>();
        _path = _folder->filePath(u"new/folders/settings.plist"_s);
        QTest::failOnWarning(QRegularExpression(u".*"_s));
    }

    void types()
    {
        const auto utc = [](int year, int month, int day, const QTime& time) {
            return QDateTime(QDate(year, month, day), time, Qt::UTC);
        };
        const QList<std::pair<QVariant, QByteArray>> table = {
            {false, "<false/>"},
            {std::numeric_limits<qlonglong>::min(), "<integer>-9223372036854775808</integer>"},
            {5e-324, "<real>5e-324</real>"},
            {QString(), "<string></string>"},
            {u" \r\n "_s, "<string> &#13;\n </string>"},
            {u"<a>&amp;]]>\"'é😀"_s, "<string>&lt;a&gt;&amp;amp;]]&gt;&quot;'é😀</string>"},
            {QByteArray("\0\xff<", 3), "<data>AP88</data>"},
            {QVariantMap{{QString(), QVariantList()}},
             "<dict>\n\t\t\t\t<key></key>\n\t\t\t\t<array/>\n\t\t\t</dict>"},
            {utc(2026, 1, 31, {17, 5, 9}), "<date>2026-01-31T17:05:09Z</date>"},
            {utc(1, 1, 1, {0, 0}), "<date>0001-01-01T00:00:00Z</date>"},
            {utc(9999, 12, 31, {23, 59, 59}), "<date>9999-12-31T23:59:59Z</date>"}};
        QVariantList values;
        QByteArray elements;
        for (const auto& [value, element] : table) {
            values << value;
            elements += "\t\t\t" + element + '\n';
        }
        QVariantList given = values.first(8); // and dates that are rounded
        given << QDateTime({2026, 1, 31}, {18, 5, 9, 900}, Qt::OffsetFromUTC, 3600)
              << utc(-44, 3, 15, {12, 0}) << utc(20'000, 1, 1, {0, 0});
        {
            PlistUserDefaults defaults(_path);
            for (int i = 0; i < 100; ++i) {
                defaults.setObject(key, i); // the last state wins
            }
            defaults.setObject(key, given);
            QCOMPARE(defaults.object(key), QVariant(values));
        }
        QCOMPARE(bytesOf(_path), dict("<array>\n" + elements + "\t\t</array>"));
        QCOMPARE(QFileInfo(_path).permissions() & 0x0fff, QFile::ReadUser | QFile::WriteUser);
        QCOMPARE(QFileInfo(QFileInfo(_path).path()).permissions() & 0x00ff, QFile::Permissions());
        const QVariantList read = PlistUserDefaults(_path).object(key).toList();
        QCOMPARE(read, values);
        for (int i = 0; i < values.size(); ++i) {
            QCOMPARE(read[i].typeId(), values[i].typeId()); // to a variant, 1 is equal to true
        }
        PlistUserDefaults(_path).removeObject(key);
        QCOMPARE(bytesOf(_path), plist("\t<dict/>"));
    }

    void filesOfOthers()
    {
        _path = _folder->filePath(u"settings.plist"_s);
        QVERIFY(putFile(_path, dict("<array><!-- by hand --><string>x<![CDATA[<y>]]>&#233;</string>"
                                    "<integer> -05 </integer><data>\n\tAP\n\t88\n</data></array>")));
        const QVariantList values = {u"x<y>é"_s, -5LL, QByteArray("\0\xff<", 3)};
        QCOMPARE(PlistUserDefaults(_path).object(key).toList(), values);
    }

    void damage_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("cut") << dict("<true/>").chopped(2);
        QTest::newRow("no dictionary") << plist("<array><true/></array>");
        const QByteArray tooLong(PropertyList::maximumBytes, 'x');
        QTest::newRow("too long") << dict("<string>" + tooLong + "</string>");
        QTest::newRow("nested") << dict(QByteArray("<array>").repeated(100'000) +
                                        QByteArray("</array>").repeated(100'000));
        for (const char* const value : {"<string>\xff</string>", "<colour/>", "<true/><key>b</key>",
                                        "<integer>9223372036854775808</integer>", "<real>nan</real>",
                                        "<date>2026-04-31T00:00:00Z</date>", "<data>!!!!</data>"}) {
            QTest::newRow(value) << dict(value);
        }
    }

    void damage()
    {
        QFETCH(QByteArray, bytes);
        _path = _folder->filePath(u"settings.plist"_s);
        QVERIFY(mkfifo(QFile::encodeName(_path).constData(), 0600) == 0); // to open it would be to wait
        expectWarning("cannot be read.*damaged-1");
        QVERIFY(!PlistUserDefaults(_path).object(key).isValid());
        QVERIFY(putFile(_path, bytes));
        expectWarning("cannot be read.*damaged-2");
        PlistUserDefaults(_path).setObject(key, true);
        QCOMPARE(bytesOf(_path), dict("<true/>"));
        QVERIFY(bytesOf(_path + u".damaged-2"_s) == bytes);
    }

    void damageThatCannotBeSetAside()
    {
        // Room for the temporary name of a write but not for the longer one of a damaged file.
        const QString path = _folder->filePath(QString(247, QLatin1Char('x')));
        QVERIFY(putFile(path, "damaged"));
        expectWarning("no change will be kept");
        {
            PlistUserDefaults defaults(path);
            defaults.setObject(key, true);
            QCOMPARE(defaults.boolean(key), std::optional(true));
        }
        QCOMPARE(bytesOf(path), QByteArray("damaged"));
    }

    void refusedValues()
    {
        const QVariant deepest = nested(PropertyList::maximumDepth - 1);
        PlistUserDefaults(_path).setObject(key, deepest);
        PlistUserDefaults defaults(_path);
        QCOMPARE(defaults.object(key), deepest);
        for (const QVariant& value :
             {QVariant(), QVariant(QVariantList{1.0, -qInf()}),
              QVariant(std::numeric_limits<qulonglong>::max()), QVariant(QString(QChar(0xd800))),
              QVariant(QVariantMap{{QString(QChar(1)), true}}), QVariant(QDateTime()),
              nested(PropertyList::maximumDepth)}) {
            expectWarning("refused");
            defaults.setObject(key, value);
            QCOMPARE(defaults.object(key), deepest);
        }
    }

    void failedWrites()
    {
        const QString blocker = _folder->filePath(u"new"_s);
        QVERIFY(putFile(blocker, "a file where the folder should be"));
        const QString first = u"1"_s;
        const auto isStored = [&](bool value) { return PlistUserDefaults(_path).boolean(first) == value; };
        static std::atomic_int failures;
        const auto handler =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
                failures += text.contains(QLatin1String("could not be written")) ? 1 : 0;
            });
        const auto restore = qScopeGuard([handler] { qInstallMessageHandler(handler); });

        PlistUserDefaults defaults(_path);
        defaults.setObject(first, true);
        QTRY_COMPARE(failures, 1);
        QVERIFY(QFile::remove(blocker));
        defaults.setObject(key, 2);
        QTRY_VERIFY(isStored(true));
        defaults.setObject(key, QByteArray(PropertyList::maximumBytes, 'x'));
        QTRY_COMPARE(failures, 2);
        QVERIFY(isStored(true));
        defaults.removeObject(key);
        defaults.setObject(first, false);
        QTRY_VERIFY(isStored(false));
    }

private:
    std::unique_ptr<QTemporaryDir> _folder;
    QString _path;
};

QTEST_GUILESS_MAIN(DefaultsTest)
#include "defaults_test.moc"
