#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QObject>

class MprisPlayer;
class RunLoop;

/// Every MPRIS player on the session bus. The connection is this object's own, so that it can be made anew
/// when the bus is restarted; until then there are no players.
class MprisBus : public QObject
{
    Q_OBJECT

public:
    /// Connects to the bus at `address`, or to the session bus if that is empty.
    explicit MprisBus(RunLoop& runLoop, QString address = {});
    ~MprisBus() override;

    /// In the order in which they came.
    QList<MprisPlayer*> players() const { return _players; }

Q_SIGNALS:
    void playerAdded(MprisPlayer* player);

    /// The player has left the list and is about to be destroyed.
    void playerRemoved(MprisPlayer* player);

private Q_SLOTS:
    void nameOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);
    void propertiesChanged(const QDBusMessage& signal);
    void seeked(const QDBusMessage& signal);
    void trackListChanged(const QDBusMessage& signal);
    void disconnected();

private:
    bool connectToBus();
    void reconnect(double delay);
    void findPlayers();
    void findOwner(const QString& name);
    void addName(const QString& name, const QString& owner);
    void findProcess(MprisPlayer* player);
    void removeName(const QString& name, const QString& owner);
    void remove(MprisPlayer* player);
    MprisPlayer* withUniqueName(const QString& name) const;

    RunLoop& _runLoop;
    QString _address;
    QString _connectionName;
    QDBusConnection _bus;
    QList<MprisPlayer*> _players;
};
