#pragma once

#include "platform/UserDefaults.h"
#include "prefs/Choice.h"

#include <optional>
#include <utility>

/// How the values of a type are stored: as they are, unless a specialisation beside the type says otherwise.
template<typename T>
struct StoredForm {
    static QVariant of(const T& value) { return QVariant::fromValue(value); }

    /// None for what is not the stored form of a value.
    static std::optional<T> read(const QVariant& stored)
    {
        return stored.metaType() == QMetaType::fromType<T>() ? std::optional(stored.value<T>())
                                                             : std::nullopt;
    }
};

/// An enumeration of choices is stored as the raw value of the case.
template<typename Case>
requires std::is_enum_v<Case>
struct StoredForm<Case> {
    static QVariant of(Case value) { return rawValue(value); }
    static std::optional<Case> read(const QVariant& stored)
    {
        const auto text = StoredForm<QString>::read(stored);
        return text ? withRawValue<Case>(*text) : std::nullopt;
    }
};

/// Logs that a setting has been ignored.
void logUnreadable(const QString& key);

/// What is stored under a key, else the fallback. What is there but cannot be read is logged.
template<typename T>
T readStored(const UserDefaults& defaults, const QString& key, T fallback)
{
    const QVariant stored = defaults.object(key);
    auto value = StoredForm<T>::read(stored);
    if (stored.isValid() && !value) {
        logUnreadable(key);
    }
    return value ? *std::move(value) : std::move(fallback);
}
