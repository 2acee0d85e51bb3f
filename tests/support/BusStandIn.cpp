#include "support/BusStandIn.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QScopeGuard>

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QDBusConnection connection(const QString& address)
{
    static int count = 0;
    const QString name = QStringLiteral("stand-in-%1").arg(++count);
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                             : QDBusConnection::connectToBus(address, name);
}

} // namespace

BusStandIn::BusStandIn(QString path, const QString& address)
    : _path(std::move(path))
    , _bus(connection(address))
{
    _bus.registerVirtualObject(_path, this);
}

BusStandIn::~BusStandIn()
{
    QDBusConnection::disconnectFromBus(_bus.name());
}

void BusStandIn::announce(const QString& interface, const QVariantMap& values, const QStringList& invalidated)
{
    emitSignal(propertiesInterface, QStringLiteral("PropertiesChanged"), {interface, values, invalidated});
}

void BusStandIn::emitSignal(const QString& interface, const QString& member, const QVariantList& arguments)
{
    auto signal = QDBusMessage::createSignal(_path, interface, member);
    signal.setArguments(arguments);
    _bus.send(signal);
}

void BusStandIn::lie(const QVariantMap& values, int milliseconds)
{
    _lies = values;
    _end.setRemainingTime(milliseconds);
}

QString BusStandIn::introspect(const QString& /*path*/) const
{
    return {};
}

bool BusStandIn::handleMessage(const QDBusMessage& message, const QDBusConnection& bus)
{
    if (message.member() == QStringLiteral("Introspect")) {
        return false; // answered with the text of introspect()
    }
    const auto failure =
        failures.constFind(failures.contains(message.member()) ? message.member() : QStringLiteral("*"));
    if (failure != failures.constEnd()) {
        ++failed;
        message.setDelayedReply(true);
        return failure->isEmpty() || bus.send(message.createErrorReply(*failure, QStringLiteral("no")));
    }
    if (message.interface() == propertiesInterface) {
        asked << message.arguments().value(1).toString();
        const QVariant value = answer(message);
        const auto told = qScopeGuard([this] {
            if (onQuestion) {
                onQuestion();
            }
        });
        return bus.send(value.isValid()
                            ? message.createReply(value)
                            : message.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("no")));
    }
    const auto reply = perform(message);
    return bus.send(reply ? message.createReply(*reply)
                          : message.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("no")));
}

std::optional<QVariantList> BusStandIn::perform(const QDBusMessage& /*call*/)
{
    return std::nullopt;
}

QVariant BusStandIn::answer(const QDBusMessage& question) const
{
    QVariantMap values = _properties;
    if (!_end.hasExpired()) {
        values.insert(_lies);
    }
    if (question.member() == QStringLiteral("GetAll")) {
        return values;
    }
    const QVariant value = values.value(question.arguments().value(1).toString());
    return value.isValid() ? QVariant::fromValue(QDBusVariant(value)) : QVariant();
}
