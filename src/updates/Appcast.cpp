#include "updates/Appcast.h"

#include "updates/VersionComparison.h"

#include <QTextDocumentFragment>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

constexpr qsizetype mostItems = 1000;
constexpr qsizetype longestNotes = 32'768; // characters
constexpr qsizetype signatureLength = 64;  // bytes

const QString extension = QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");

QString plainText(const QString& notes)
{
    const QString text = notes.left(longestNotes).trimmed();
    return text.contains(u'<') ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

QByteArray decodedSignature(const QString& text)
{
    const auto bytes =
        QByteArray::fromBase64Encoding(text.trimmed().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return bytes && bytes.decoded.size() == signatureLength ? bytes.decoded : QByteArray();
}

/// Reads one item, element by element.
class ItemReader
{
public:
    explicit ItemReader(QXmlStreamReader& xml) : _xml(xml) {}

    /// None for an item that is not for us.
    std::optional<UpdateItem> read()
    {
        while (_xml.readNextStartElement()) {
            readElement();
        }
        const bool isWhole = !_item.version.isEmpty() && _item.address.isValid();
        if (_isForOthers || !isWhole) {
            return std::nullopt;
        }
        if (_item.shortVersion.isEmpty()) {
            _item.shortVersion = _item.version;
        }
        return _item;
    }

private:
    void readElement()
    {
        const auto name = _xml.name().toString();
        const bool isOurs = _xml.namespaceUri() == extension;
        if (!isOurs && name == QStringLiteral("enclosure")) {
            readEnclosure(_xml.attributes());
            _xml.skipCurrentElement();
        } else if (!isOurs && name == QStringLiteral("description")) {
            _item.notes = plainText(text());
        } else if (isOurs && name == QStringLiteral("version")) {
            _item.version = text();
        } else if (isOurs && name == QStringLiteral("shortVersionString")) {
            _item.shortVersion = text();
        } else if (isOurs && name == QStringLiteral("minimumSystemVersion")) {
            _item.minimumSystemVersion = text();
        } else if (isOurs && name == QStringLiteral("channel")) {
            _isForOthers = true;
            _xml.skipCurrentElement();
        } else {
            _xml.skipCurrentElement();
        }
    }

    void readEnclosure(const QXmlStreamAttributes& attributes)
    {
        const auto value = [&attributes](const char* name) {
            return attributes.value(QString(), QLatin1String(name)).toString().trimmed();
        };
        const auto ours = [&attributes](const char* name) {
            return attributes.value(extension, QLatin1String(name)).toString().trimmed();
        };
        _item.address = QUrl(value("url"), QUrl::StrictMode);
        _item.length = std::max(0LL, value("length").toLongLong());
        _item.signature = decodedSignature(ours("edSignature"));
        if (const QString version = ours("version"); !version.isEmpty()) {
            _item.version = version;
        }
        if (const QString version = ours("shortVersionString"); !version.isEmpty()) {
            _item.shortVersion = version;
        }
        const QString system = ours("os");
        _isForOthers |= !system.isEmpty() && system != QStringLiteral("linux");
    }

    QString text() { return _xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed(); }

    QXmlStreamReader& _xml;
    UpdateItem _item;
    bool _isForOthers = false;
};

/// Down to the root. A feed has no use for definitions of its own.
bool findRoot(QXmlStreamReader& xml)
{
    while (!xml.atEnd() && !xml.isStartElement()) {
        if (xml.readNext() == QXmlStreamReader::DTD) {
            xml.raiseError(QStringLiteral("it has a document type"));
        }
    }
    if (xml.isStartElement() && xml.name() == u"rss") {
        return true;
    }
    if (!xml.hasError()) {
        xml.raiseError(QStringLiteral("it is no RSS"));
    }
    return false;
}

} // namespace

std::optional<QList<UpdateItem>> parseAppcast(const QByteArray& text, QString& fault)
{
    QXmlStreamReader xml(text);
    QList<UpdateItem> items;
    const bool hasChannel = findRoot(xml) && xml.readNextStartElement() && xml.name() == u"channel";
    while (hasChannel && xml.readNextStartElement()) {
        if (xml.name() != u"item" || items.size() >= mostItems) {
            xml.skipCurrentElement();
        } else if (const auto item = ItemReader(xml).read()) {
            items.append(*item);
        }
    }
    if (xml.hasError() || !hasChannel) {
        fault = xml.hasError() ? xml.errorString() : QStringLiteral("it has no channel");
        return std::nullopt;
    }
    return items;
}

std::optional<UpdateItem> newestThatFits(const QList<UpdateItem>& items, const QString& systemVersion)
{
    std::optional<UpdateItem> newest;
    for (const UpdateItem& item : items) {
        const bool fits = item.minimumSystemVersion.isEmpty() || systemVersion.isEmpty() ||
                          compareVersions(systemVersion, item.minimumSystemVersion) >= 0;
        if (fits && (!newest || compareVersions(item.version, newest->version) > 0)) {
            newest = item;
        }
    }
    return newest;
}
