#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

/// The program's settings: typed values under string keys, kept across runs. Values are booleans, 64-bit
/// integers, doubles, strings, data, dates, lists and dictionaries of these.
class UserDefaults
{
public:
    UserDefaults() = default;
    virtual ~UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    /// The store that the shared instances use; set once, before the first of them is touched.
    static UserDefaults& standard();
    static void setStandard(UserDefaults* defaults);

    /// The stored value; an invalid variant when the key is absent. Integers come as `qlonglong`.
    virtual QVariant object(const QString& key) const = 0;

    /// Stores a value, which is the key's from now on. A value of a type that the store cannot hold is
    /// refused with a log line.
    virtual void setObject(const QString& key, const QVariant& value) = 0;
    virtual void removeObject(const QString& key) = 0;

    /// The value under the key if it is of exactly this type, none otherwise: no conversions.
    std::optional<bool> boolean(const QString& key) const;
    std::optional<qlonglong> integer(const QString& key) const;
    std::optional<double> real(const QString& key) const;
    std::optional<QString> string(const QString& key) const;
    std::optional<QByteArray> data(const QString& key) const;
    std::optional<QVariantMap> dictionary(const QString& key) const;
};
