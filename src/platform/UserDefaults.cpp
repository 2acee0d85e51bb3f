#include "platform/UserDefaults.h"

namespace {

UserDefaults* standardDefaults = nullptr;

template<typename T>
std::optional<T> exactly(const QVariant& value)
{
    return value.metaType() == QMetaType::fromType<T>() ? std::optional<T>(value.value<T>()) : std::nullopt;
}

} // namespace

UserDefaults& UserDefaults::standard()
{
    Q_ASSERT_X(standardDefaults != nullptr, Q_FUNC_INFO, "no store has been set");
    return *standardDefaults;
}

void UserDefaults::setStandard(UserDefaults* defaults)
{
    standardDefaults = defaults;
}

std::optional<bool> UserDefaults::boolean(const QString& key) const
{
    return exactly<bool>(object(key));
}

std::optional<qlonglong> UserDefaults::integer(const QString& key) const
{
    return exactly<qlonglong>(object(key));
}

std::optional<double> UserDefaults::real(const QString& key) const
{
    return exactly<double>(object(key));
}

std::optional<QString> UserDefaults::string(const QString& key) const
{
    return exactly<QString>(object(key));
}

std::optional<QByteArray> UserDefaults::data(const QString& key) const
{
    return exactly<QByteArray>(object(key));
}

std::optional<QVariantMap> UserDefaults::dictionary(const QString& key) const
{
    return exactly<QVariantMap>(object(key));
}
