#pragma once

#include "prefs/StoredForm.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/// Logs how many entries of a stored list have been dropped.
void logDropped(qsizetype entries);

/// A list of records is stored as a JSON array of objects. An entry that is no record is dropped and leaves
/// the rest as it is; nothing but a text that is no such array makes the list unreadable.
template<typename Record>
requires requires(const Record& record)
{
    QJsonObject(record.json());
}
struct StoredForm<QList<Record>> {
    static QVariant of(const QList<Record>& records)
    {
        QJsonArray array;
        for (const Record& record : records) {
            array.append(record.json());
        }
        return QJsonDocument(array).toJson(QJsonDocument::Compact);
    }

    static std::optional<QList<Record>> read(const QVariant& stored)
    {
        const auto json = StoredForm<QByteArray>::read(stored);
        const QJsonDocument document = QJsonDocument::fromJson(json.value_or(QByteArray()));
        if (!document.isArray()) {
            return std::nullopt;
        }
        QList<Record> records;
        const QJsonArray array = document.array();
        for (const QJsonValue entry : array) {
            if (auto record = Record::fromJson(entry.toObject())) {
                records.append(*std::move(record));
            }
        }
        if (records.size() < array.size()) {
            logDropped(array.size() - records.size());
        }
        return records;
    }
};
