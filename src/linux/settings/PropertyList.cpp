#include "linux/settings/PropertyList.h"

#include "base/Date.h"

#include <QDateTime>

#include <plist/plist.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace {

using Tree = std::unique_ptr<void, decltype(&plist_free)>;

constexpr auto unixOffset = static_cast<qint64>(Date::unixOffset);

/// libplist counts the seconds of a date from 2001 in 32 bits.
std::optional<int32_t> secondsSince2001(const QDateTime& date)
{
    const qint64 seconds = date.toSecsSinceEpoch() - unixOffset;
    const auto narrow = static_cast<int32_t>(seconds);
    return date.isValid() && narrow == seconds ? std::optional(narrow) : std::nullopt;
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
        return storableIf(secondsSince2001(value.toDateTime()).has_value(),
                          QDateTime::fromSecsSinceEpoch(value.toDateTime().toSecsSinceEpoch(), Qt::UTC));
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

plist_t node(const QVariant& value);

plist_t dictionaryNode(const QVariantMap& dictionary)
{
    const plist_t result = plist_new_dict();
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        plist_dict_set_item(result, entry.key().toUtf8().constData(), node(entry.value()));
    }
    return result;
}

plist_t listNode(const QVariantList& list)
{
    const plist_t result = plist_new_array();
    for (const QVariant& item : list) {
        plist_array_append_item(result, node(item));
    }
    return result;
}

plist_t node(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::LongLong:
        return plist_new_uint(static_cast<uint64_t>(value.toLongLong())); // written as a signed number
    case QMetaType::Double:
        return plist_new_real(value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray data = value.toByteArray();
        return plist_new_data(data.constData(), static_cast<uint64_t>(data.size()));
    }
    case QMetaType::QDateTime:
        return plist_new_date(secondsSince2001(value.toDateTime()).value_or(0), 0);
    case QMetaType::QVariantList:
        return listNode(value.toList());
    case QMetaType::QVariantMap:
        return dictionaryNode(value.toMap());
    default:
        return plist_new_string(value.toString().toUtf8().constData());
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
    const Tree tree(dictionaryNode(values), &plist_free);
    char* text = nullptr;
    uint32_t length = 0;
    plist_to_xml(tree.get(), &text, &length);
    const std::unique_ptr<char, decltype(&plist_to_xml_free)> owner(text, &plist_to_xml_free);
    // Written as it is, a carriage return would be a line feed to every reader of XML.
    const QByteArray result = QByteArray::fromRawData(text, length).replace('\r', "&#13;");
    return result.size() <= maximumBytes ? result : QByteArray();
}
