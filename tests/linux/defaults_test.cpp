#include "linux/settings/PlistUserDefaults.h"
#include "linux/settings/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QXmlStreamReader>

#include <atomic>
#include <limits>
#include <sys/stat.h>

namespace {

const QString key = QStringLiteral("a key");

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
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">" +
           root + "</plist>";
}

QByteArray dict(const QByteArray& value)
{
    return plist("<dict><key>a</key>" + value + "</dict>");
}

void expectWarning(const char* pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString::fromLatin1(pattern)));
}

/// The value under `key` as another reader sees it: "element:text" without the white space.
QString elementInFile(const QString& path)
{
    QXmlStreamReader xml(bytesOf(path));
    while (xml.readNextStartElement() && xml.name() != QLatin1String("key")) {
    }
    if (xml.readElementText() != key || !xml.readNextStartElement()) {
        return QStringLiteral("nothing");
    }
    const QString name = xml.name().toString();
    const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
    return name + QLatin1Char(':') + (name == QLatin1String("string") ? text : text.simplified());
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
    void init();
    void types_data();
    void types();
    void filesOfOthers();
    void damage_data();
    void damage();
    void damageThatCannotBeSetAside();
    void refusedValues();
    void failedWrites();
    void writesOnlyChanges();

private:
    std::unique_ptr<QTemporaryDir> _folder;
    QString _path;
};

void DefaultsTest::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    _path = _folder->filePath(QStringLiteral("new/folders/settings.plist"));
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
}

void DefaultsTest::types_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("stored"); // what comes back
    QTest::addColumn<QString>("element");
    const auto row = [](const char* element, const QVariant& value, const QVariant& stored = {}) {
        QTest::newRow(element) << value << (stored.isValid() ? stored : value) << QString::fromUtf8(element);
    };
    row("false:", false);
    row("integer:-9223372036854775808", std::numeric_limits<qlonglong>::min());
    row("real:0.1", 0.1);
    row("real:5e-324", 5e-324);
    row("string:", QString());
    row("string: \r\n ", QStringLiteral(" \r\n "));
    row("string:<a>&amp;]]>\"'é😀", QStringLiteral("<a>&amp;]]>\"'é😀"));
    row("data:AP88", QByteArray("\0\xff<", 3));
    row("data:", QByteArray());
    row("date:2026-01-31T17:05:09Z", QDateTime({2026, 1, 31}, {18, 5, 9, 900}, Qt::OffsetFromUTC, 3600),
        QDateTime({2026, 1, 31}, {17, 5, 9}, Qt::UTC));
    row("date:9999-12-31T23:59:59Z", QDateTime({20'000, 1, 1}, {0, 0}, Qt::UTC),
        QDateTime({9999, 12, 31}, {23, 59, 59}, Qt::UTC));
    row("dict:x -5 0001-01-01T00:00:00Z",
        QVariantMap{{QStringLiteral("x"), QVariantList{-5, QDateTime({-44, 3, 15}, {12, 0}, Qt::UTC)}}},
        QVariantMap{{QStringLiteral("x"), QVariantList{-5LL, QDateTime({1, 1, 1}, {0, 0}, Qt::UTC)}}});
    row("dict:ZGVlcA==", QVariantMap{{QString(), QByteArray("deep")}});
}

void DefaultsTest::types()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, stored);
    {
        PlistUserDefaults defaults(_path);
        for (int i = 0; i < 100; ++i) {
            defaults.setObject(key, i);
        }
        defaults.setObject(key, value);
        QCOMPARE(defaults.object(key), stored);
    }
    QTEST(elementInFile(_path), "element");
    QVERIFY(bytesOf(_path).startsWith(plist({}).chopped(8)));
    QCOMPARE(QFileInfo(_path).permissions() & 0x0fff, QFile::ReadUser | QFile::WriteUser);
    QCOMPARE(QFileInfo(QFileInfo(_path).path()).permissions() & 0x00ff, QFile::Permissions());
    QCOMPARE(PlistUserDefaults(_path).object(key), stored);
    QCOMPARE(PlistUserDefaults(_path).object(key).metaType(), stored.metaType());
    PlistUserDefaults(_path).removeObject(key);
    QVERIFY(!PlistUserDefaults(_path).object(key).isValid());
}

void DefaultsTest::filesOfOthers()
{
    _path = _folder->filePath(QStringLiteral("settings.plist"));
    QVERIFY(putFile(_path, plist("<!-- by hand --><dict>\n<key>a &amp; b</key><string>x<![CDATA[<y>]]>&#233;"
                                 "</string><key>n</key><integer> -05 </integer><key>r</key><real>1e2</real>"
                                 "<key>d</key><data>\n\tAP\n\t88\n</data></dict>")));
    const PlistUserDefaults defaults(_path);
    QCOMPARE(defaults.string(QStringLiteral("a & b")), std::optional(QStringLiteral("x<y>é")));
    QCOMPARE(defaults.integer(QStringLiteral("n")), std::optional(qlonglong{-5}));
    QCOMPARE(defaults.real(QStringLiteral("r")), std::optional(100.0));
    QCOMPARE(defaults.data(QStringLiteral("d")), std::optional(QByteArray("\0\xff<", 3)));
}

void DefaultsTest::damage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("cut") << dict("<true/>").chopped(1);
    QTest::newRow("no dictionary") << plist("<array><true/></array>");
    QTest::newRow("no UTF-8") << dict("<string>\xff</string>");
    QTest::newRow("too long") << dict("<string>" + QByteArray(PropertyList::maximumBytes, 'x') + "</string>");
    QTest::newRow("nested") << dict(QByteArray("<array>").repeated(100'000) +
                                    QByteArray("</array>").repeated(100'000));
    for (const char* const value :
         {"<colour/>", "<true/><key>b</key>", "<integer>9223372036854775808</integer>", "<real>nan</real>",
          "<date>2026-04-31T00:00:00Z</date>", "<data>!!!!</data>"}) {
        QTest::newRow(value) << dict(value);
    }
}

void DefaultsTest::damage()
{
    QFETCH(QByteArray, bytes);
    _path = _folder->filePath(QStringLiteral("settings.plist"));
    const QString first = _path + QStringLiteral(".damaged-1");
    QVERIFY(mkfifo(QFile::encodeName(_path).constData(), 0600) == 0); // to open it would be to wait
    expectWarning("cannot be read.*damaged-1");
    PlistUserDefaults(_path).removeObject(key);
    QVERIFY(putFile(_path, bytes));
    expectWarning("cannot be read.*damaged-2");
    PlistUserDefaults(_path).setObject(key, true);
    QCOMPARE(PlistUserDefaults(_path).boolean(key), std::optional(true));
    QVERIFY(!PlistUserDefaults(_path).object(QStringLiteral("a")).isValid());
    QVERIFY(bytesOf(_path + QStringLiteral(".damaged-2")) == bytes);
    QVERIFY(QFileInfo::exists(first) && !QFileInfo(first).isFile());
}

void DefaultsTest::damageThatCannotBeSetAside()
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
    QVERIFY(QFile::remove(path)); // the name itself is one that can be written
    PlistUserDefaults(path).setObject(key, true);
    QVERIFY(QFileInfo::exists(path));
}

void DefaultsTest::refusedValues()
{
    const QVariant deepest = nested(PropertyList::maximumDepth - 1);
    PlistUserDefaults(_path).setObject(key, deepest);
    PlistUserDefaults defaults(_path);
    QCOMPARE(defaults.object(key), deepest);
    for (const QVariant& value :
         {QVariant(), QVariant(QVariantList{1.0, -qInf()}), QVariant(std::numeric_limits<qulonglong>::max()),
          QVariant(QString(QChar(0xd800))), QVariant(QVariantMap{{QString(QChar(1)), true}}),
          QVariant(QDateTime()), QVariant(QUrl(QStringLiteral("https://example.org"))),
          nested(PropertyList::maximumDepth)}) {
        expectWarning("refused");
        defaults.setObject(key, value);
        QCOMPARE(defaults.object(key), deepest);
    }
}

void DefaultsTest::failedWrites()
{
    const QString blocker = _folder->filePath(QStringLiteral("new"));
    QVERIFY(putFile(blocker, "a file where the folder should be"));
    const QString first = QStringLiteral("1");
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

void DefaultsTest::writesOnlyChanges()
{
    PlistUserDefaults(_path).setObject(key, QVariantList{true});
    {
        PlistUserDefaults defaults(_path);
        QVERIFY(QFile::remove(_path));
        defaults.setObject(key, QVariantList{true});
        defaults.removeObject(QStringLiteral("absent"));
    }
    QVERIFY(!QFileInfo::exists(_path));
    PlistUserDefaults(_path).setObject(key, QVariantList{1});
    PlistUserDefaults(_path).setObject(key, QVariantList{true}); // equal to 1 for a variant
    QCOMPARE(PlistUserDefaults(_path).object(key).toList().value(0).typeId(), QMetaType::Bool);
    const QDir folder = QFileInfo(_path).dir();
    QCOMPARE(folder.entryList(QDir::Files | QDir::Hidden).size(), 1); // nothing is left over
}

QTEST_GUILESS_MAIN(DefaultsTest)
#include "defaults_test.moc"
