#include "prefs/DailyRecord.h"

#include <algorithm>

namespace {

const QString dateField = QStringLiteral("date");
const QString totalField = QStringLiteral("totalSeconds");
const QString artistsField = QStringLiteral("artists");

/// Far more than a day has, since a calendar day lasts longer for somebody who travels through the time
/// zones.
constexpr double mostSecondsADay = 1e6;

double seconds(const QJsonValue& value)
{
    return std::clamp(value.toDouble(), 0.0, mostSecondsADay);
}

} // namespace

QString DailyRecord::text(QDate day)
{
    return day.toString(Qt::ISODate);
}

QJsonObject DailyRecord::json() const
{
    QJsonObject times;
    for (auto artist = artists.begin(); artist != artists.end(); ++artist) {
        times.insert(artist.key(), artist.value());
    }
    return {{dateField, date}, {totalField, totalSeconds}, {artistsField, times}};
}

std::optional<DailyRecord> DailyRecord::fromJson(const QJsonObject& object)
{
    const QDate day = QDate::fromString(object.value(dateField).toString(), Qt::ISODate);
    if (!day.isValid()) {
        return std::nullopt;
    }
    DailyRecord record{text(day), seconds(object.value(totalField)), {}};
    const QJsonObject times = object.value(artistsField).toObject();
    for (auto artist = times.begin(); artist != times.end(); ++artist) {
        if (artist->isDouble()) {
            record.artists.insert(artist.key(), seconds(*artist));
        }
    }
    return record;
}
