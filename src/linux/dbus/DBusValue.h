#pragma once

#include <QDBusArgument>
#include <QVariant>

#include <optional>

/// Values as D-Bus delivers them inside other values: wrapped in variants, and of any type.
namespace DBusValue {

/// What the variants around it hold.
QVariant unwrapped(const QVariant& value);

/// Nothing when it is no dictionary of texts and values.
std::optional<QVariantMap> dictionary(const QVariant& value);

/// A list of what has this signature ("ao" is a list of object paths); nothing when it is something else.
template<typename List>
std::optional<List> list(const QVariant& value, const char* signature)
{
    const QVariant plain = unwrapped(value);
    if (plain.metaType() == QMetaType::fromType<List>()) {
        return plain.value<List>();
    }
    if (plain.metaType() != QMetaType::fromType<QDBusArgument>() ||
        plain.value<QDBusArgument>().currentSignature() != QLatin1String(signature)) {
        return std::nullopt;
    }
    return qdbus_cast<List>(plain);
}

} // namespace DBusValue
