#include "linux/settings/PropertyList.h"

#include <QDateTime>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// In whole seconds, and within the years that are written with four digits.
QDateTime storableDate(const QDateTime& date)
{
    static const QDateTime first({1, 1, 1}, {0, 0}, Qt::UTC);
    static const QDateTime last({9999, 12, 31}, {23, 59, 59}, Qt::UTC);
    return std::clamp(QDateTime::fromSecsSinceEpoch(date.toSecsSinceEpoch(), Qt::UTC), first, last);
}

bool isXmlText(const QString& text)
{
    return text.isValidUtf16() && std::none_of(text.begin(), text.end(), [](QChar c) {
               const char16_t unit = c.unicode();
               return (unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r') || unit >= 0xfffe;
           });
}

std::optional<QVariant> storableIf(bool condition, const QVariant& value)
{
    return condition ? std::optional(value) : std::nullopt;
}

std::optional<QVariant> storable(const QVariant& value, int depth);

std::optional<QVariant> storableList(const QVariantList& list, int depth)
{
    QVariantList result;
    for (const QVariant& item : list) {
        auto element = storable(item, depth);
        if (!element) {
            return std::nullopt;
        }
        result.append(*std::move(element));
    }
    return result;
}

std::optional<QVariant> storableDictionary(const QVariantMap& dictionary, int depth)
{
    QVariantMap result;
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        const auto element = storable(entry.value(), depth);
        if (!element || !isXmlText(entry.key())) {
            return std::nullopt;
        }
        result.insert(entry.key(), *element);
    }
    return result;
}

/// `depth` is the number of dictionaries and lists around the value.
std::optional<QVariant> storable(const QVariant& value, int depth)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::QByteArray:
        return value;
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return storableIf(value.toULongLong() <= std::numeric_limits<qlonglong>::max(), value.toLongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return storableIf(std::isfinite(value.toDouble()), value.toDouble());
    case QMetaType::QString:
        return storableIf(isXmlText(value.toString()), value);
    case QMetaType::QDateTime:
        return storableIf(value.toDateTime().isValid(), storableDate(value.toDateTime()));
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return depth < PropertyList::maximumDepth ? storableList(value.toList(), depth + 1) : std::nullopt;
    case QMetaType::QVariantMap:
        return depth < PropertyList::maximumDepth ? storableDictionary(value.toMap(), depth + 1)
                                                  : std::nullopt;
    default:
        return std::nullopt;
    }
}

/// Writes a text. A carriage return that is written as it is would be a line feed to every reader of XML.
void writeText(QXmlStreamWriter& xml, const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('\r'));
    xml.writeCharacters(parts.first());
    for (const QString& part : parts.sliced(1)) {
        xml.writeEntityReference(QStringLiteral("#13"));
        xml.writeCharacters(part);
    }
}

void writeElement(QXmlStreamWriter& xml, const char* name, const QString& text)
{
    xml.writeStartElement(QLatin1String(name));
    writeText(xml, text);
    xml.writeEndElement();
}

void write(QXmlStreamWriter& xml, const QVariant& value);

void writeDictionary(QXmlStreamWriter& xml, const QVariantMap& dictionary)
{
    xml.writeStartElement(QStringLiteral("dict"));
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        writeElement(xml, "key", entry.key());
        write(xml, entry.value());
    }
    xml.writeEndElement();
}

void writeList(QXmlStreamWriter& xml, const QVariantList& list)
{
    xml.writeStartElement(QStringLiteral("array"));
    for (const QVariant& item : list) {
        write(xml, item);
    }
    xml.writeEndElement();
}

void write(QXmlStreamWriter& xml, const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return xml.writeEmptyElement(value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
    case QMetaType::LongLong:
        return writeElement(xml, "integer", QString::number(value.toLongLong()));
    case QMetaType::Double:
        return writeElement(xml, "real",
                            QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest));
    case QMetaType::QByteArray:
        return writeElement(xml, "data", QString::fromLatin1(value.toByteArray().toBase64()));
    case QMetaType::QDateTime:
        return writeElement(xml, "date", value.toDateTime().toString(PropertyList::dateFormat));
    case QMetaType::QVariantList:
        return writeList(xml, value.toList());
    case QMetaType::QVariantMap:
        return writeDictionary(xml, value.toMap());
    default:
        return writeElement(xml, "string", value.toString());
    }
}

} // namespace

std::optional<QVariant> PropertyList::storable(const QVariant& value)
{
    return ::storable(value, 1);
}

bool PropertyList::isStorableKey(const QString& key)
{
    return isXmlText(key);
}

QByteArray PropertyList::encode(const QVariantMap& values)
{
    QByteArray result;
    QXmlStreamWriter xml(&result);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(-1); // a tab
    xml.writeStartDocument();
    xml.writeDTD(QStringLiteral(R"(<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" )"
                                R"("http://www.apple.com/DTDs/PropertyList-1.0.dtd">)"));
    xml.writeStartElement(QStringLiteral("plist"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    writeDictionary(xml, values);
    xml.writeEndDocument();
    return result.size() <= maximumBytes ? result : QByteArray();
}
