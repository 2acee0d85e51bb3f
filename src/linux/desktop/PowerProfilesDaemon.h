#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

#include <memory>

class QDBusMessage;
class QDBusPendingCallWatcher;

/// One bus name of the power-profiles daemon, followed as it comes and goes.
class PowerProfilesDaemon : public QObject
{
    Q_OBJECT

public:
    /// `interface` is also the name of the service.
    PowerProfilesDaemon(QDBusConnection bus, QString interface, QString path);
    ~PowerProfilesDaemon() override;

    /// False while the daemon is absent or has not answered.
    bool isPowerSaver() const { return _isPowerSaver; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void propertiesChanged(const QString& interface, const QVariantMap& values,
                           const QStringList& invalidated);

private:
    using Answer = void (PowerProfilesDaemon::*)(const QDBusMessage& reply);

    void call(const QDBusMessage& request, Answer answer);
    void ownerAnswered(const QDBusMessage& reply);
    void profileAnswered(const QDBusMessage& reply);
    void setOwner(const QString& owner);
    void requestProfile();
    void setProfile(const QVariant& profile);
    void setPowerSaver(bool isPowerSaver);

    QDBusConnection _bus;
    QString _interface;
    QString _path;
    QDBusServiceWatcher _watcher;
    QString _owner;                                    ///< unique name; empty while nobody has the service
    std::unique_ptr<QDBusPendingCallWatcher> _pending; ///< the one question that is still open
    bool _isPowerSaver = false;
};
