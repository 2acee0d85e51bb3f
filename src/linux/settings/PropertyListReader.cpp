#include "linux/settings/PropertyList.h"

#include <QDateTime>
#include <QStringDecoder>
#include <QXmlStreamReader>

namespace {

/// A value without children. An invalid one when the text is not of its type or the element is unknown.
QVariant leaf(QStringView element, const QString& text)
{
    bool ok = true;
    QVariant value;
    if (element == QLatin1String("string")) {
        value = text;
    } else if (element == QLatin1String("integer")) {
        value = text.toLongLong(&ok);
    } else if (element == QLatin1String("real")) {
        value = text.toDouble(&ok);
    } else if (element == QLatin1String("date")) {
        QDateTime date = QDateTime::fromString(text.trimmed(), PropertyList::dateFormat);
        date.setTimeSpec(Qt::UTC);
        value = date;
    } else if (element == QLatin1String("data")) {
        const QByteArray digits = text.simplified().remove(QLatin1Char(' ')).toUtf8();
        const auto decoded = QByteArray::fromBase64Encoding(digits, QByteArray::AbortOnBase64DecodingErrors);
        ok = decoded.decodingStatus == QByteArray::Base64DecodingStatus::Ok;
        value = decoded.decoded;
    }
    return ok ? PropertyList::storable(value).value_or(QVariant()) : QVariant();
}

/// Reads one document. The first fault raises an error in the XML reader, which ends all loops.
class Reader
{
public:
    explicit Reader(const QString& text) : _xml(text) {}

    QVariantMap document()
    {
        enter("plist");
        enter("dict");
        QVariantMap values = dictionary(1);
        if (_xml.readNextStartElement()) {
            _xml.raiseError(QStringLiteral("more than one value at the root"));
        }
        while (!_xml.atEnd()) {
            _xml.readNext();
        }
        return values;
    }

    QString fault() const
    {
        return _xml.hasError() ? QStringLiteral("line %1: %2").arg(_xml.lineNumber()).arg(_xml.errorString())
                               : QString();
    }

private:
    void enter(const char* element)
    {
        if (!_xml.readNextStartElement() || _xml.name() != QLatin1String(element)) {
            _xml.raiseError(QStringLiteral("no %1").arg(QLatin1String(element)));
        }
    }

    QVariantMap dictionary(int depth)
    {
        QVariantMap result;
        while (_xml.readNextStartElement()) {
            const bool isKey = _xml.name() == QLatin1String("key");
            const QString key = _xml.readElementText();
            if (!isKey || !PropertyList::isStorableKey(key) || !_xml.readNextStartElement()) {
                _xml.raiseError(QStringLiteral("no key with a value"));
                break;
            }
            result.insert(key, value(depth));
        }
        return result;
    }

    QVariantList list(int depth)
    {
        QVariantList result;
        while (_xml.readNextStartElement()) {
            result.append(value(depth));
        }
        return result;
    }

    /// `depth` is the number of dictionaries and lists around the value.
    QVariant value(int depth)
    {
        const QString element = _xml.name().toString();
        const bool isDictionary = element == QLatin1String("dict");
        if (isDictionary || element == QLatin1String("array")) {
            if (depth == PropertyList::maximumDepth) {
                _xml.raiseError(QStringLiteral("nested too deeply"));
                return {};
            }
            return isDictionary ? QVariant(dictionary(depth + 1)) : QVariant(list(depth + 1));
        }
        const QString text = _xml.readElementText();
        if (element == QLatin1String("true") || element == QLatin1String("false")) {
            return element == QLatin1String("true");
        }
        QVariant value = leaf(element, text);
        if (!value.isValid() && !_xml.hasError()) {
            _xml.raiseError(QStringLiteral("no valid value in an element \"%1\"").arg(element));
        }
        return value;
    }

    QXmlStreamReader _xml;
};

} // namespace

std::optional<QVariantMap> PropertyList::decode(const QByteArray& text, QString& fault)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString characters = decoder.decode(text);
    if (text.size() > maximumBytes || decoder.hasError()) {
        fault = decoder.hasError() ? QStringLiteral("not in UTF-8") : QStringLiteral("too long");
        return std::nullopt;
    }
    Reader reader(characters);
    const QVariantMap values = reader.document();
    fault = reader.fault();
    return fault.isEmpty() ? std::optional(values) : std::nullopt;
}
