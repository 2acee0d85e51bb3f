#include "linux/settings/PlistUserDefaults.h"
#include "linux/settings/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QXmlStreamReader>

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
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + root + "</plist>";
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
    void noPlainFile();
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
    _path = _folder->filePath(QStringLiteral("settings.plist"));
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
    row("integer:9223372036854775807", std::numeric_limits<qlonglong>::max());
    row("real:0.10000000000000001", 0.1);
    row("real:4.9406564584124654e-324", 5e-324);
    row("string:", QString());
    row("string: \r\n ", QStringLiteral(" \r\n "));
    row("string:<a>&amp;]]>\"'é😀", QStringLiteral("<a>&amp;]]>\"'é😀"));
    row("data:AP88", QByteArray("\0\xff<", 3));
    row("data:", QByteArray());
    row("date:2026-01-31T17:05:09Z", QDateTime({2026, 1, 31}, {18, 5, 9, 900}, Qt::OffsetFromUTC, 3600),
        QDateTime({2026, 1, 31}, {17, 5, 9}, Qt::UTC));
    row("dict:x -5", QVariantMap{{QStringLiteral("x"), QVariantList{-5, QVariantMap{}}}},
        QVariantMap{{QStringLiteral("x"), QVariantList{qlonglong{-5}, QVariantMap{}}}});
    row("dict:ZGVlcA==", QVariantMap{{QString(), QByteArray("deep")}});
}

void DefaultsTest::types()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, stored);
    const QString path = _folder->filePath(QStringLiteral("new/folders/settings.plist"));
    PlistUserDefaults defaults(path);
    defaults.setObject(key, value);
    QTEST(elementInFile(path), "element");
    QCOMPARE(QFileInfo(path).permissions() & 0x0fff, QFile::ReadUser | QFile::WriteUser);
    QCOMPARE(QFileInfo(QFileInfo(path).path()).permissions() & 0x00ff, QFile::Permissions());
    QCOMPARE(PlistUserDefaults(path).object(key), stored);
    QCOMPARE(PlistUserDefaults(path).object(key).metaType(), stored.metaType());
    QCOMPARE(defaults.object(key), stored);
    defaults.removeObject(key);
    QVERIFY(!PlistUserDefaults(path).object(key).isValid());
}

void DefaultsTest::filesOfOthers()
{
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
    for (const char* const bytes :
         {"", "<plist><dict><key>a</key><string>b", "<plist><dict><key>a</key><true/></dict>"}) {
        QTest::addRow("cut: %s", bytes) << QByteArray(bytes);
    }
    for (const char* const root : {"<array><true/></array>", "<dict/><dict/>", "<dict><true/></dict>",
                                   "<dict><key>\xff</key><true/></dict>"}) {
        QTest::newRow(root) << plist(root);
    }
    const auto row = [](const char* name, const QByteArray& value) {
        QTest::newRow(name) << plist("<dict><key>a</key>" + value + "</dict>");
    };
    for (const char* const value :
         {"<colour/>", "<string>&bogus;</string>", "<integer>abc</integer>", "<integer/>",
          "<true/><key>b</key>", "<string><true/></string>", "<integer>9223372036854775808</integer>",
          "<real>1,5</real>", "<real>1e999</real>", "<real>nan</real>", "<date>2026-04-31T00:00:00Z</date>",
          "<date>2400-01-01T00:00:00Z</date>", "<data>!!!!</data>", "<string>&#1;</string>"}) {
        row(value, value);
    }
    row("nested", QByteArray("<array>").repeated(100'000) + QByteArray("</array>").repeated(100'000));
    row("too long", "<string>" + QByteArray(PropertyList::maximumBytes, 'x') + "</string>");
}

void DefaultsTest::damage()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(putFile(_path, bytes));
    QVERIFY(putFile(_path + QStringLiteral(".damaged-1"), "an earlier one"));
    expectWarning("cannot be read.*damaged-2");
    PlistUserDefaults defaults(_path);
    QVERIFY(!defaults.object(QStringLiteral("a")).isValid());
    QVERIFY(!QFileInfo::exists(_path));
    defaults.setObject(key, true);
    QCOMPARE(PlistUserDefaults(_path).boolean(key), std::optional(true));
    QVERIFY(bytesOf(_path + QStringLiteral(".damaged-2")) == bytes);
    QCOMPARE(bytesOf(_path + QStringLiteral(".damaged-1")), QByteArray("an earlier one"));
}

void DefaultsTest::noPlainFile()
{
    QVERIFY(mkfifo(QFile::encodeName(_path).constData(), 0600) == 0); // to open it would be to wait
    expectWarning("cannot be read.*damaged");
    PlistUserDefaults(_path).setObject(key, true);
    QCOMPARE(PlistUserDefaults(_path).boolean(key), std::optional(true));
}

void DefaultsTest::damageThatCannotBeSetAside()
{
    // Room for the temporary name of a write but not for the longer one of a damaged file.
    const QString path = _folder->filePath(QString(247, QLatin1Char('x')));
    QVERIFY(putFile(path, "damaged"));
    expectWarning("no change will be kept");
    PlistUserDefaults defaults(path);
    defaults.setObject(key, true);
    QCOMPARE(defaults.boolean(key), std::optional(true));
    QCOMPARE(bytesOf(path), QByteArray("damaged"));
    QVERIFY(QFile::remove(path)); // the name itself is one that can be written
    PlistUserDefaults(path).setObject(key, true);
    QVERIFY(QFileInfo::exists(path));
}

void DefaultsTest::refusedValues()
{
    PlistUserDefaults defaults(_path);
    const QVariant deepest = nested(PropertyList::maximumDepth - 1);
    defaults.setObject(key, deepest);
    for (const QVariant& value :
         {QVariant(), QVariant(QVariantList{1.0, -qInf()}), QVariant(std::numeric_limits<qulonglong>::max()),
          QVariant(QStringLiteral("a\x1b")), QVariant(QString(QChar(0xd800))),
          QVariant(QVariantMap{{QString(QChar(1)), true}}),
          QVariant(QDateTime({2400, 1, 1}, {0, 0}, Qt::UTC)),
          QVariant(QUrl(QStringLiteral("https://example.org"))), nested(PropertyList::maximumDepth)}) {
        expectWarning("refused");
        defaults.setObject(key, value);
        QCOMPARE(defaults.object(key), deepest);
    }
    QCOMPARE(PlistUserDefaults(_path).object(key), deepest);
}

void DefaultsTest::failedWrites()
{
    const QString first = QStringLiteral("1");
    const QString blocker = _folder->filePath(QStringLiteral("blocker"));
    const QString path = blocker + QStringLiteral("/settings.plist");
    QVERIFY(putFile(blocker, "a file where the folder should be"));
    PlistUserDefaults defaults(path);
    expectWarning("could not be written");
    defaults.setObject(first, true);
    defaults.setObject(key, true);

    QVERIFY(QFile::remove(blocker));
    defaults.setObject(key, true);
    QCOMPARE(PlistUserDefaults(path).boolean(first), std::optional(true));

    const QByteArray before = bytesOf(path);
    expectWarning("could not be written");
    defaults.setObject(key, QByteArray(PropertyList::maximumBytes, 'x'));
    QCOMPARE(bytesOf(path), before);
    defaults.removeObject(key);
    defaults.setObject(first, false);
    QCOMPARE(PlistUserDefaults(path).boolean(first), std::optional(false));
}

void DefaultsTest::writesOnlyChanges()
{
    PlistUserDefaults(_path).setObject(key, QVariantList{true});
    PlistUserDefaults defaults(_path);
    QVERIFY(QFile::remove(_path));
    defaults.setObject(key, QVariantList{true});
    defaults.removeObject(QStringLiteral("absent"));
    QVERIFY(!QFileInfo::exists(_path));
    defaults.setObject(key, QVariantList{1}); // equal to true for a variant
    QCOMPARE(PlistUserDefaults(_path).object(key).toList().value(0).typeId(), QMetaType::LongLong);
    QCOMPARE(QDir(_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 1); // nothing is left over
}

QTEST_GUILESS_MAIN(DefaultsTest)
#include "defaults_test.moc"
