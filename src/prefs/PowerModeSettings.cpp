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

PowerModeTable defaultPowerModes()
{
    PowerModeTable table;
    for (const auto& [mode, id, name] : Choices<PowerMode>::all) {
        table.insert(QLatin1String(id), PowerModeSettings::defaults(mode));
    }
    return table;
}

QVariant StoredForm<PowerModeTable>::of(const PowerModeTable& table)
{
    QJsonObject object;
    for (auto entry = table.begin(); entry != table.end(); ++entry) {
        object.insert(entry.key(), QJsonObject{{enabledField, entry->visualizerEnabled},
                                               {rateField, entry->visualizerFPS},
                                               {refreshField, entry->driftRefreshSeconds}});
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<PowerModeTable> StoredForm<PowerModeTable>::read(const QVariant& stored)
{
    const auto json = StoredForm<QByteArray>::read(stored);
    const QJsonDocument document = QJsonDocument::fromJson(json.value_or(QByteArray()));
    if (!document.isObject()) {
        return std::nullopt;
    }
    PowerModeTable table = defaultPowerModes();
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
