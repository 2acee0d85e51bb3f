#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

/// Calls `answer` with the reply, a failure too, when it comes, unless `context` is gone by then.
template<typename... Values, typename Answer>
void whenAnswered(const QDBusPendingReply<Values...>& call, QObject* context, Answer answer)
{
    auto* const watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [answer = std::move(answer)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         answer(QDBusPendingReply<Values...>(*finished));
                     });
}
