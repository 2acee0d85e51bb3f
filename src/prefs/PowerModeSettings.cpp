#include "prefs/PowerModeSettings.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

namespace {

const QString enabledField = QStringLiteral("visualizerEnabled");
const QString rateField = QStringLiteral("visualizerFPS");
const QString refreshField = QStringLiteral("driftRefreshSeconds");

std::optional<int> integer(const QJsonValue& value)
{
    const double number = value.toDouble();
    const auto whole = static_cast<int>(
        qBound<double>(std::numeric_limits<int>::min(), number, std::numeric_limits<int>::max()));
    return value.isDouble() && whole == number ? std::optional(whole) : std::nullopt;
}

std::optional<PowerModeSettings> decode(const QJsonObject& object)
{
    const QJsonValue enabled = object.value(enabledField);
    const auto rate = integer(object.value(rateField));
    const auto refresh = integer(object.value(refreshField));
    if (!enabled.isBool() || !rate || !refresh) {
        return std::nullopt;
    }
    return PowerModeSettings{enabled.toBool(), *rate, *refresh};
}

} // namespace

PowerModeSettings PowerModeSettings::defaults(PowerMode mode)
{
    switch (mode) {
    case PowerMode::lowPower:
        return {false, 0, 30};
    case PowerMode::powerUser:
        return {true, 30, 5};
    case PowerMode::normal:
        break;
    }
    return {true, 15, 10};
}

QByteArray encodePowerModes(const PowerModeTable& table)
{
    QJsonObject object;
    for (auto entry = table.begin(); entry != table.end(); ++entry) {
        object.insert(entry.key(), QJsonObject{{enabledField, entry->visualizerEnabled},
                                               {rateField, entry->visualizerFPS},
                                               {refreshField, entry->driftRefreshSeconds}});
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<PowerModeTable> decodePowerModes(const QByteArray& json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        return std::nullopt;
    }
    PowerModeTable table;
    const QJsonObject object = document.object();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const auto settings = decode(entry->toObject());
        if (!settings) {
            return std::nullopt;
        }
        table.insert(entry.key(), *settings);
    }
    return table;
}
