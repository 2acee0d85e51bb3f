#pragma once

#include <QByteArray>
#include <QDate>
#include <QList>
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
};

/// A JSON array of objects with the record's fields.
QByteArray encodeDailyRecords(const QList<DailyRecord>& records);

/// Nothing when anything in the text is of another form than it is encoded in, or is a time that cannot be
/// listened to in a day. Unknown fields do no harm.
std::optional<QList<DailyRecord>> decodeDailyRecords(const QByteArray& json);
