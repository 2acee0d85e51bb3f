#pragma once

#include <QObject>

class UserDefaults;
class Workspace;

/// The music player that the user has named in the settings, while it does not run: no other is followed in
/// its place.
class AwaitedPlayer : public QObject
{
    Q_OBJECT

public:
    /// Both outlive it.
    AwaitedPlayer(const Workspace& workspace, const UserDefaults& defaults);

    /// Empty when none is awaited.
    QString name() const;

Q_SIGNALS:
    void nameChanged();

private:
    const Workspace& _workspace;
    const UserDefaults& _defaults;
};
