#include "engine/UpNextReply.h"

#include <QStringList>

QList<UpNextTrack> parseUpNextReply(const std::optional<QString>& reply)
{
    QList<UpNextTrack> tracks;
    const QStringList rows = reply.value_or(QString()).split(QStringLiteral("###"), Qt::SkipEmptyParts);
    for (const QString& row : rows) {
        const QStringList fields = row.split(QStringLiteral("|||"));
        bool isNumber = false;
        const qint64 index = fields[0].trimmed().toLongLong(&isNumber);
        if (isNumber && fields.size() >= 3) {
            tracks.append({fields[1], fields[2], index});
        }
    }
    return tracks;
}
