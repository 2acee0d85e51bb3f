#include "linux/dbus/DBusValue.h"

#include <QDBusVariant>

QVariant DBusValue::unwrapped(const QVariant& value)
{
    QVariant inner = value;
    while (inner.metaType() == QMetaType::fromType<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    return inner;
}

std::optional<QVariantMap> DBusValue::dictionary(const QVariant& value)
{
    return list<QVariantMap>(value, "a{sv}");
}
