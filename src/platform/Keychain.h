#pragma once

#include <QByteArray>
#include <QObject>
#include <QProperty>
#include <QString>

#include <functional>

/// Secrets that the desktop keeps for the user, by service and account. Everything is answered later, on the
/// main thread and within a limited time, unless `context` is gone by then; in the order in which it was
/// asked.
class Keychain : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool keepsSecrets READ keepsSecrets NOTIFY keepsSecretsChanged BINDABLE bindableKeepsSecrets)

public:
    struct Item {
        QString service;
        QString account;
    };
    enum Status {
        done = 0,
        notFound, ///< there is no such item
        refused,  ///< the keychain is locked, and the user does not unlock it
        noAnswer, ///< not in time; what was to be written or removed may still be
        failed    ///< there is no keychain, or it cannot
    };
    using Reader = std::function<void(Status status, const QByteArray& secret)>;
    using Completion = std::function<void(Status status)>;

    virtual void read(const Item& item, QObject* context, Reader reader) = 0;

    /// Removes what is stored for the item, then adds the secret.
    virtual void write(const Item& item, const QByteArray& secret, QObject* context,
                       Completion completion) = 0;
    virtual void remove(const Item& item, QObject* context, Completion completion) = 0;

    /// Whether secrets outlive the program, as far as is known: false from the time that the keychain fails
    /// or is not unlocked until it obeys again.
    bool keepsSecrets() const { return _keepsSecrets; }
    QBindable<bool> bindableKeepsSecrets() { return &_keepsSecrets; }

Q_SIGNALS:
    void keepsSecretsChanged();

protected:
    void setKeepsSecrets(bool keeps) { _keepsSecrets = keeps; }

private:
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(Keychain, bool, _keepsSecrets, true, &Keychain::keepsSecretsChanged)
};
