#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QUuid>

#include <functional>
#include <optional>

using namespace Qt::Literals::StringLiterals;

/// A service of a test's own: one object on a connection of its own, with properties and signals, that has
/// its names or not and fails where a test wants it to. It answers from the thread of the test, so that
/// whoever waited for it there would never be answered.
class BusStandIn : public QDBusVirtualObject
{
public:
    /// On the bus at `address`, or on the session bus if that is empty.
    explicit BusStandIn(QString path, const QString& address = {})
        : _path(std::move(path))
        , _bus(address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, _name)
                                 : QDBusConnection::connectToBus(address, _name))
    {
        _bus.registerVirtualObject(_path, this);
    }
    ~BusStandIn() override { QDBusConnection::disconnectFromBus(_name); }

    bool own(const QString& name) { return _bus.registerService(name); }
    bool disown(const QString& name) { return _bus.unregisterService(name); }

    /// Those of all interfaces.
    QVariant property(const QString& name) const { return _properties.value(name); }

    /// Changes properties without a word.
    void set(const QVariantMap& values) { _properties.insert(values); }

    /// Tells of properties, some with their values and some without, whatever they are.
    void announce(const QString& interface, const QVariantMap& values, const QStringList& invalidated = {})
    {
        emitSignal(propertiesInterface, u"PropertiesChanged"_s, {interface, values, invalidated});
    }
    void emitSignal(const QString& interface, const QString& member, const QVariantList& arguments,
                    const QString& path = {})
    {
        auto signal = QDBusMessage::createSignal(path.isEmpty() ? _path : path, interface, member);
        signal.setArguments(arguments);
        _bus.send(signal);
    }

    /// What goes wrong, by the method's name or "*": the name of the error, or nothing for no answer at all.
    QMap<QString, QString> failures;

    /// For this long, in milliseconds, questions are answered with these values, whatever is true.
    void lie(const QVariantMap& values, int milliseconds)
    {
        _lies = values;
        _end.setRemainingTime(milliseconds);
    }

    QStringList asked; ///< for properties, the names of those that were told, "" for all of them
    int failed = 0;    ///< calls that went wrong
    std::function<void()> onQuestion; ///< called after each

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        const QString member = message.member();
        if (member == u"Introspect"_s) {
            return false; // answered with the text of introspect()
        }
        const auto failure = failures.constFind(failures.contains(member) ? member : u"*"_s);
        if (failure != failures.constEnd()) {
            ++failed;
            message.setDelayedReply(true);
            return failure->isEmpty() || bus.send(message.createErrorReply(*failure, u"no"_s));
        }
        const bool isQuestion = message.interface() == propertiesInterface;
        const auto reply = isQuestion ? answer(message) : perform(message);
        const auto error = isQuestion ? QDBusError::UnknownProperty : QDBusError::UnknownMethod;
        bus.send(reply ? message.createReply(*reply) : message.createErrorReply(error, u"no"_s));
        if (isQuestion && onQuestion) {
            onQuestion();
        }
        return true;
    }

protected:
    /// What a call other than a question for properties is answered with; an error if nothing.
    virtual std::optional<QVariantList> perform(const QDBusMessage& /*call*/) { return std::nullopt; }

private:
    std::optional<QVariantList> answer(const QDBusMessage& question)
    {
        const QString name = question.arguments().value(1).toString();
        asked << name;
        QVariantMap values = _properties;
        if (!_end.hasExpired()) {
            values.insert(_lies);
        }
        if (question.member() == u"GetAll"_s) {
            return QVariantList{values};
        }
        const QVariant value = values.value(name);
        return value.isValid() ? std::optional(QVariantList{QVariant::fromValue(QDBusVariant(value))})
                               : std::nullopt;
    }

    static inline const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

    const QString _path;
    const QString _name = QUuid::createUuid().toString(); ///< of the connection
    QDBusConnection _bus;
    QVariantMap _properties;
    QVariantMap _lies;
    QDeadlineTimer _end; ///< of the lies
};
