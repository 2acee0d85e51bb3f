#pragma once

#include <QDate>
#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

/// What was listened to on one calendar day.
struct DailyRecord {
    QString date;                  ///< the local day, "yyyy-MM-dd": days sort as their texts do
    double totalSeconds = 0;       ///< 0 or more
    QMap<QString, double> artists; ///< seconds by the artist's name

    friend bool operator==(const DailyRecord&, const DailyRecord&) = default;

    /// The form in which records carry a day.
    static QString text(QDate day);

    /// An object with the fields above.
    QJsonObject json() const;
    /// None without a day. A time too long for a day is cut to the longest, one that is no number is left
    /// out. Unknown fields do no harm.
    static std::optional<DailyRecord> fromJson(const QJsonObject& object);
};
