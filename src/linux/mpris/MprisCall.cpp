#include "linux/mpris/MprisCall.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

void MprisCall::send(const QDBusConnection& bus, QObject* context, Answer answer) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(player, QStringLiteral("/org/mpris/MediaPlayer2"), interface, member);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, timeLimit), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [answer = std::move(answer)](QDBusPendingCallWatcher* call) {
                         call->deleteLater();
                         answer(call->reply());
                     });
}
