#include "prefs/DailyRecord.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString dateField = QStringLiteral("date");
const QString totalField = QStringLiteral("totalSeconds");
const QString artistsField = QStringLiteral("artists");

/// Generous: by moving through the time zones one calendar day may be lived for two days and more.
constexpr double mostSecondsADay = 1e6;

std::optional<double> seconds(const QJsonValue& value)
{
    const double seconds = value.toDouble(-1);
    return seconds >= 0 && seconds <= mostSecondsADay ? std::optional(seconds) : std::nullopt;
}

std::optional<DailyRecord> decode(const QJsonObject& object)
{
    const QJsonValue date = object.value(dateField);
    const QJsonValue artists = object.value(artistsField);
    const auto total = seconds(object.value(totalField));
    if (!date.isString() || !artists.isObject() || !total) {
        return std::nullopt;
    }
    DailyRecord record{date.toString(), *total, {}};
    const QJsonObject times = artists.toObject();
    for (auto artist = times.begin(); artist != times.end(); ++artist) {
        const auto time = seconds(artist.value());
        if (!time) {
            return std::nullopt;
        }
        record.artists.insert(artist.key(), *time);
    }
    return record;
}

QJsonObject encode(const DailyRecord& record)
{
    QJsonObject artists;
    for (auto artist = record.artists.begin(); artist != record.artists.end(); ++artist) {
        artists.insert(artist.key(), artist.value());
    }
    return {{dateField, record.date}, {totalField, record.totalSeconds}, {artistsField, artists}};
}

} // namespace

QString DailyRecord::text(QDate day)
{
    return day.toString(Qt::ISODate);
}

QByteArray encodeDailyRecords(const QList<DailyRecord>& records)
{
    QJsonArray array;
    for (const DailyRecord& record : records) {
        array.append(encode(record));
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QList<DailyRecord>> decodeDailyRecords(const QByteArray& json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<DailyRecord> records;
    const QJsonArray array = document.array();
    for (const QJsonValue value : array) {
        const auto record = decode(value.toObject());
        if (!record) {
            return std::nullopt;
        }
        records.append(*record);
    }
    return records;
}
