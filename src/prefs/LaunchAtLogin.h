#pragma once

#include <QObject>

class LoginItem;

/// Whether the program starts when the user logs in. Nothing of it is stored here: what the desktop has is
/// the truth, and is read each time.
class LaunchAtLogin : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY isEnabledChanged)

public:
    explicit LaunchAtLogin(LoginItem& item) : _item(item) {}
    static LaunchAtLogin& shared();

    bool isEnabled() const;

    /// A failure is logged; `isEnabled` then tells what the desktop still has.
    void setEnabled(bool isEnabled);

    /// To be called by a view that comes to the front: the user may have been in the desktop's own settings.
    Q_INVOKABLE void refresh() { Q_EMIT isEnabledChanged(); }

Q_SIGNALS:
    /// It may be another than before.
    void isEnabledChanged();

private:
    LoginItem& _item;
};
