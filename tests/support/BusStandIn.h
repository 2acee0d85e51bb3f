#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QVariantMap>

#include <functional>
#include <optional>

/// A service of a test's own: one object on a connection of its own, with properties and signals, that has
/// its names or not and fails where a test wants it to. It answers from the thread of the test, so that
/// whoever waited for it there would never be answered.
class BusStandIn : public QDBusVirtualObject
{
    Q_OBJECT

public:
    /// On the bus at `address`, or on the session bus if that is empty.
    explicit BusStandIn(QString path, const QString& address = {});
    ~BusStandIn() override;

    bool own(const QString& name) { return _bus.registerService(name); }
    bool disown(const QString& name) { return _bus.unregisterService(name); }

    /// Those of all interfaces.
    QVariant property(const QString& name) const { return _properties.value(name); }

    /// Changes properties without a word.
    void set(const QVariantMap& values) { _properties.insert(values); }

    /// Tells of properties, some with their values and some without, whatever they are.
    void announce(const QString& interface, const QVariantMap& values, const QStringList& invalidated = {});
    void emitSignal(const QString& interface, const QString& member, const QVariantList& arguments);

    /// What goes wrong, by the method's name or "*": the name of the error, or nothing for no answer at all.
    QMap<QString, QString> failures;

    /// For this long questions are answered with these values, whatever is true.
    void lie(const QVariantMap& values, int milliseconds);

    QStringList asked; ///< for properties, the names of those that were told, "" for all of them
    int failed = 0;    ///< calls that went wrong
    std::function<void()> onQuestion; ///< called after each

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

protected:
    /// What a call other than a question for properties is answered with; an error if nothing.
    virtual std::optional<QVariantList> perform(const QDBusMessage& call);

private:
    QVariant answer(const QDBusMessage& question) const;

    QString _path;
    QDBusConnection _bus;
    QVariantMap _properties;
    QVariantMap _lies;
    QDeadlineTimer _end; ///< of the lies
};
