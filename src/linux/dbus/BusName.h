#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

/// A service on the bus, followed as its owners come and go. Calls go to the owner's unique name: for a
/// well-known name Qt would first ask the bus for its owner, and block.
class BusName : public QObject
{
    Q_OBJECT

public:
    BusName(QDBusConnection bus, QString name);

    /// Has the bus start the service, if it can and nobody has the name.
    void start();

Q_SIGNALS:
    /// The unique name of who has the service now; empty while nobody has.
    void ownerChanged(const QString& owner);

private:
    void findOwner();

    QDBusConnection _bus;
    QString _name;
    QDBusServiceWatcher _watcher;
};
