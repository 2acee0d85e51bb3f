#include "platform/linux/PlistUserDefaults.h"
#include "platform/linux/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
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

/// The value under `key` as another reader sees it: "<element>text</element>" without the white space.
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
    void everyCharacter();
    void filesOfOthers();
    void damage_data();
    void damage();
    void noPlainFile();
    void damageThatCannotBeSetAside();
    void refused_data();
    void refused();
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
    QTest::addColumn<QVariant>("stored"); ///< what comes back
    QTest::addColumn<QString>("element");

    const auto add = [](const QVariant& value, const QString& element, const QVariant& stored = {}) {
        QTest::addRow("%s", qPrintable(element)) << value << (stored.isValid() ? stored : value) << element;
    };
    add(true, QStringLiteral("true:"));
    add(false, QStringLiteral("false:"));
    add(qlonglong{0}, QStringLiteral("integer:0"));
    add(1, QStringLiteral("integer:1"), qlonglong{1});
    add(4'000'000'000U, QStringLiteral("integer:4000000000"), qlonglong{4'000'000'000});
    add(std::numeric_limits<qlonglong>::min(), QStringLiteral("integer:-9223372036854775808"));
    add(std::numeric_limits<qlonglong>::max(), QStringLiteral("integer:9223372036854775807"));
    add(0.1, QStringLiteral("real:0.10000000000000001"));
    add(-2.0, QStringLiteral("real:-2"));
    add(5e-324, QStringLiteral("real:4.9406564584124654e-324"));
    add(QString(), QStringLiteral("string:"));
    add(QStringLiteral(" \r\n "), QStringLiteral("string: \r\n "));
    add(QStringLiteral("<a>&amp;]]>\"'é😀"), QStringLiteral("string:<a>&amp;]]>\"'é😀"));
    add(QByteArray("\0\xff<", 3), QStringLiteral("data:AP88"));
    add(QByteArray(), QStringLiteral("data:"));
    add(QDateTime({2026, 1, 31}, {18, 5, 9, 900}, Qt::OffsetFromUTC, 3600),
        QStringLiteral("date:2026-01-31T17:05:09Z"), QDateTime({2026, 1, 31}, {17, 5, 9}, Qt::UTC));
    add(QStringList{QStringLiteral("a"), QStringLiteral("b")}, QStringLiteral("array:a b"),
        QVariantList{QStringLiteral("a"), QStringLiteral("b")});
    add(QVariantList(), QStringLiteral("array:"));
    add(QVariantMap{{QStringLiteral("x"), QVariantList{-5, QVariantMap{}}}}, QStringLiteral("dict:x -5"),
        QVariantMap{{QStringLiteral("x"), QVariantList{qlonglong{-5}, QVariantMap{}}}});
    add(QVariantMap{{QString(), QByteArray("deep")}}, QStringLiteral("dict:ZGVlcA=="));
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

    const QVariant reread = PlistUserDefaults(path).object(key);
    QCOMPARE(reread, stored);
    QCOMPARE(reread.metaType(), stored.metaType());
    QCOMPARE(defaults.object(key), reread);
    defaults.removeObject(key);
    QVERIFY(!PlistUserDefaults(path).object(key).isValid());
}

void DefaultsTest::everyCharacter()
{
    QString text;
    for (char32_t code = 0; code <= 0x1'0000; ++code) {
        const QString character = QString::fromUcs4(&code, 1);
        if (PropertyList::storable(character)) {
            text += character;
        }
    }
    QVERIFY(text.size() > 60'000);
    PlistUserDefaults(_path).setObject(key, text);
    QCOMPARE(PlistUserDefaults(_path).string(key), std::optional(text));
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

    const auto add = [](const char* name, const QByteArray& value) {
        QTest::newRow(name) << plist("<dict><key>a</key>" + value + "</dict>");
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no plist") << QByteArray("pellar\n");
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("list at the root") << plist("<array><true/></array>");
    QTest::newRow("nothing at the root") << plist("");
    QTest::newRow("cut in a text") << QByteArray("<plist><dict><key>a</key><string>b");
    QTest::newRow("cut at the end") << QByteArray("<plist><dict><key>a</key><true/></dict>");
    QTest::newRow("no UTF-8") << plist("<dict><key>\xff</key><true/></dict>");
    QTest::newRow("binary") << QByteArray("bplist00\xd1\x01\x02QaQb\x08\x0b\r", 17);
    QTest::newRow("text behind the end") << QByteArray(plist("<dict/>") + "x");
    QTest::newRow("two roots") << plist("<dict/><dict/>");
    QTest::newRow("values without keys") << plist("<dict><true/></dict>");
    add("unknown element", "<colour/>");
    add("unknown entity", "<string>&bogus;</string>");
    add("no integer", "<integer>abc</integer>");
    add("empty integer", "<integer/>");
    add("forbidden character", "<string>&#1;</string>");
    add("key without a value", "<true/><key>b</key>");
    add("value in a value", "<string><true/></string>");
    add("beyond 64 bits", "<integer>9223372036854775808</integer>");
    add("comma", "<real>1,5</real>");
    add("infinite", "<real>1e999</real>");
    add("no number", "<real>nan</real>");
    add("no date", "<date>yesterday</date>");
    add("31st of April", "<date>2026-04-31T00:00:00Z</date>");
    add("distant date", "<date>2400-01-01T00:00:00Z</date>");
    add("no base64", "<data>!!!!</data>");
    add("nested lists", QByteArray("<array>").repeated(100'000) + QByteArray("</array>").repeated(100'000));
    add("too long", "<string>" + QByteArray(PropertyList::maximumBytes, 'x') + "</string>");
}

void DefaultsTest::damage()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(putFile(_path, bytes));
    QVERIFY(putFile(_path + QStringLiteral(".damaged-1"), "an earlier one"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read.*damaged-2")));
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
    const QByteArray path = QFile::encodeName(_path);
    for (const bool isPipe : {false, true}) {
        QVERIFY((isPipe ? mkfifo(path.constData(), 0600) : mkdir(path.constData(), 0700)) == 0);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read.*damaged")));
        PlistUserDefaults(_path).setObject(key, true);
        QCOMPARE(PlistUserDefaults(_path).boolean(key), std::optional(true));
        QVERIFY(QFile::remove(_path));
    }
    QVERIFY(QFileInfo(_path + QStringLiteral(".damaged-1")).isDir());
}

void DefaultsTest::damageThatCannotBeSetAside()
{
    // Room for the temporary name of a write but not for the longer one of a damaged file.
    const QString path = _folder->filePath(QString(247, QLatin1Char('x')));
    QVERIFY(putFile(path, "damaged"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("no change will be kept")));
    PlistUserDefaults defaults(path);
    defaults.setObject(key, true);
    defaults.setObject(key, false);
    QCOMPARE(defaults.boolean(key), std::optional(false));
    QCOMPARE(bytesOf(path), QByteArray("damaged"));

    QVERIFY(QFile::remove(path)); // the name itself is one that can be written
    PlistUserDefaults(path).setObject(key, true);
    QVERIFY(QFileInfo::exists(path));
}

void DefaultsTest::refused_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("nothing") << QVariant();
    QTest::newRow("no number") << QVariant(qQNaN());
    QTest::newRow("infinite in a list") << QVariant(QVariantList{1.0, -qInf()});
    QTest::newRow("beyond 63 bits") << QVariant(std::numeric_limits<qulonglong>::max());
    QTest::newRow("control character") << QVariant(QStringLiteral("a\x1b"));
    QTest::newRow("zero character") << QVariant(QString(QChar(0)));
    QTest::newRow("half a pair") << QVariant(QString(QChar(0xd800)));
    QTest::newRow("key of a dictionary") << QVariant(QVariantMap{{QString(QChar(1)), true}});
    QTest::newRow("distant date") << QVariant(QDateTime({2400, 1, 1}, {0, 0}, Qt::UTC));
    QTest::newRow("no date") << QVariant(QDateTime());
    QTest::newRow("another type") << QVariant(QUrl(QStringLiteral("https://example.org")));
    QTest::newRow("too deep") << nested(PropertyList::maximumDepth);
}

void DefaultsTest::refused()
{
    QFETCH(QVariant, value);
    PlistUserDefaults defaults(_path);
    defaults.setObject(key, nested(PropertyList::maximumDepth - 1)); // the deepest that is kept
    const QByteArray before = bytesOf(_path);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("refused")));
    defaults.setObject(key, value);
    QCOMPARE(defaults.object(key), nested(PropertyList::maximumDepth - 1));
    QCOMPARE(bytesOf(_path), before);
    QVERIFY(PlistUserDefaults(_path).object(key).isValid());
}

void DefaultsTest::failedWrites()
{
    const QString blocker = _folder->filePath(QStringLiteral("blocker"));
    const QString path = blocker + QStringLiteral("/settings.plist");
    QVERIFY(putFile(blocker, "a file where the folder should be"));
    const auto isFailure = QRegularExpression(QStringLiteral("could not be written"));
    PlistUserDefaults defaults(path);
    QTest::ignoreMessage(QtWarningMsg, isFailure);
    defaults.setObject(QStringLiteral("1"), true);
    defaults.setObject(QStringLiteral("2"), true);

    QVERIFY(QFile::remove(blocker));
    defaults.setObject(QStringLiteral("2"), true);
    QCOMPARE(PlistUserDefaults(path).boolean(QStringLiteral("1")), std::optional(true));

    const QByteArray before = bytesOf(path);
    QTest::ignoreMessage(QtWarningMsg, isFailure);
    defaults.setObject(key, QByteArray(PropertyList::maximumBytes, 'x'));
    QCOMPARE(bytesOf(path), before);
    defaults.removeObject(key);
    defaults.setObject(QStringLiteral("3"), true);
    QCOMPARE(PlistUserDefaults(path).boolean(QStringLiteral("3")), std::optional(true));
}

void DefaultsTest::writesOnlyChanges()
{
    PlistUserDefaults(_path).removeObject(key);
    QVERIFY(!QFileInfo::exists(_path));
    PlistUserDefaults(_path).setObject(key, QVariantList{true});
    PlistUserDefaults defaults(_path);
    QVERIFY(QFile::remove(_path));
    defaults.setObject(key, QVariantList{true});
    defaults.removeObject(QStringLiteral("absent"));
    QVERIFY(!QFileInfo::exists(_path));
    defaults.setObject(key, QVariantList{1}); // equal to true for a variant
    QCOMPARE(PlistUserDefaults(_path).object(key).toList().value(0).metaType(),
             QMetaType::fromType<qlonglong>());
    const QStringList leftovers = QDir(_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    QCOMPARE(leftovers, QStringList{QStringLiteral("settings.plist")});
}

QTEST_GUILESS_MAIN(DefaultsTest)
#include "defaults_test.moc"
