#include "linux/pipewire/GraphProperties.h"

#include <pipewire/keys.h>
#include <spa/utils/dict.h>

namespace {

/// An executable can be named as a bundle is: "com.orvalen.pellar.signin".
bool isBundleName(const QString& binary)
{
    return binary.count(u'.') >= 2;
}

} // namespace

QString GraphProperties::text(const spa_dict* properties, const char* key)
{
    const char* const value = properties != nullptr ? spa_dict_lookup(properties, key) : nullptr;
    return QString::fromUtf8(value);
}

std::optional<quint32> GraphProperties::number(const spa_dict* properties, const char* key)
{
    bool isNumber = false;
    const quint32 value = text(properties, key).toUInt(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

std::optional<GraphProperties::Process> GraphProperties::process(const spa_dict* properties)
{
    std::optional<quint32> id = number(properties, PW_KEY_APP_PROCESS_ID);
    if (!id) {
        id = number(properties, PW_KEY_SEC_PID);
    }
    if (!id) {
        return std::nullopt;
    }
    const QString application = text(properties, PW_KEY_APP_ID);
    const QString binary = text(properties, PW_KEY_APP_PROCESS_BINARY);
    const bool isNamedByBinary = application.isEmpty() || isBundleName(binary);
    return Process{.id = *id, .bundleId = isNamedByBinary ? binary : application};
}
