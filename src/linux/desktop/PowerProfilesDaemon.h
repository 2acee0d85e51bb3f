#pragma once

#include "linux/dbus/Backoff.h"
#include "linux/dbus/BusName.h"

#include <PropertiesProxy.h>
#include <QObject>
#include <QVariantMap>

#include <memory>

class RunLoop;

/// One bus name of the power-profiles daemon, followed as it comes and goes.
class PowerProfilesDaemon : public QObject
{
    Q_OBJECT

public:
    /// `interface` is also the name of the service.
    PowerProfilesDaemon(QDBusConnection bus, RunLoop& runLoop, QString interface, QString path);

    /// False while the daemon is absent or has not answered.
    bool isPowerSaver() const { return _isPowerSaver; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void propertiesChanged(const QString& interface, const QVariantMap& values,
                           const QStringList& invalidated, const QDBusMessage& signal);

private:
    void setOwner(const QString& owner);
    void requestProfile();
    void requestAgain(const QString& failure);
    void setProfile(const QVariant& profile);
    void setPowerSaver(bool isPowerSaver);

    QDBusConnection _bus;
    RunLoop& _runLoop;
    QString _interface;
    QString _path;
    BusName _name;
    std::unique_ptr<PropertiesProxy> _properties; ///< null while nobody has the name
    Backoff _backoff;
    bool _isPowerSaver = false;
};
