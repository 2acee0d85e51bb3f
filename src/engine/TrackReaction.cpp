#include "engine/TrackReaction.h"

#include <QStringList>

TrackReaction parseReactionReply(const std::optional<QString>& reply)
{
    const QStringList parts = reply.value_or(QString()).split(u'|');
    const auto isTrue = [&parts](qsizetype index) {
        return parts.value(index).trimmed() == QStringLiteral("true");
    };
    return {isTrue(0), isTrue(1)};
}
