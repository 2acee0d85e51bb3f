#include "linux/keychain/KeyringLock.h"

#include "linux/dbus/WhenAnswered.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace {

using Attributes = QMap<QString, QString>;

QDBusMessage callTo(const QString& path, const QString& interface, const QString& method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.secrets"), path, interface, method);
}

} // namespace

void KeyringLock::whenKnown(QObject* context, Answer answer)
{
    QDBusMessage call = callTo(QStringLiteral("/org/freedesktop/secrets/aliases/default"),
                               QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << QStringLiteral("org.freedesktop.Secret.Collection") << QStringLiteral("Locked");
    const QDBusPendingReply<QDBusVariant> reply = QDBusConnection::sessionBus().asyncCall(call);
    whenAnswered(reply, context, [answer = std::move(answer)](const QDBusPendingReply<QDBusVariant>& got) {
        answer(got.isValid() && got.value().variant().toBool());
    });
}

void KeyringLock::whenItemKnown(const Keychain::Item& item, QObject* context, Answer answer)
{
    using Found = QDBusPendingReply<QList<QDBusObjectPath>, QList<QDBusObjectPath>>;
    qDBusRegisterMetaType<Attributes>();
    QDBusMessage call =
        callTo(QStringLiteral("/org/freedesktop/secrets"), QStringLiteral("org.freedesktop.Secret.Service"),
               QStringLiteral("SearchItems"));
    const Attributes attributes = {{QStringLiteral("server"), item.service},
                                   {QStringLiteral("user"), item.account}};
    call << QVariant::fromValue(attributes);
    const Found reply = QDBusConnection::sessionBus().asyncCall(call);
    whenAnswered(reply, context, [answer = std::move(answer)](const Found& found) {
        answer(found.isValid() && !found.argumentAt<1>().isEmpty()); // the unlocked ones, then the locked
    });
}
