#pragma once

#include "platform/UserDefaults.h"

/// Settings that live as long as the object.
class MemoryDefaults final : public UserDefaults
{
public:
    QVariant object(const QString& key) const override { return values.value(key); }
    void setObject(const QString& key, const QVariant& value) override { values.insert(key, value); }
    void removeObject(const QString& key) override { values.remove(key); }

    QVariantMap values;
};
