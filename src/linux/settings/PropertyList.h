#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

/// Settings as an XML property list, the text and the values: no files here.
namespace PropertyList {

/// Longest text that is read or written.
constexpr qsizetype maximumBytes = 16'000'000;

/// Deepest nesting of lists and dictionaries, the outermost dictionary included.
constexpr int maximumDepth = 64;

/// How a date, which is in UTC, is written.
inline const QString dateFormat = QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'");

/// The value as a property list gives it back: every integer as `qlonglong`, every list as `QVariantList`, a
/// date in UTC, in whole seconds and within the years 1 to 9999, else the nearest that is. None when the
/// format cannot hold it: another type, a number that is not finite or beyond 64 bits signed, no date at all,
/// a text with characters that XML has no form for, a nesting too deep.
std::optional<QVariant> storable(const QVariant& value);

/// Whether a text can be a dictionary key.
bool isStorableKey(const QString& key);

/// The text for values that are all `storable`. Empty when it would be longer than `maximumBytes`.
QByteArray encode(const QVariantMap& values);

/// The values of a text whose root is a dictionary. None when any part of it is damaged; `fault` then says
/// what is wrong, in English, for the log.
std::optional<QVariantMap> decode(const QByteArray& text, QString& fault);

} // namespace PropertyList
