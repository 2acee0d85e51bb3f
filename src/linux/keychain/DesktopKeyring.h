#pragma once

#include "linux/dbus/BusName.h"
#include "platform/Keychain.h"

#include <QPointer>

#include <list>
#include <memory>

class RunLoop;

namespace QKeychain {
class Job;
}

/// The keychain in the desktop's keyring: the Secret Service, or KWallet on a desktop that has no other.
///
/// The keyring does one thing at a time here. It has half a minute for each; what it has been given stays
/// with it beyond that, as the user may still be typing the password that unlocks it. A user who has refused
/// that is not asked again: from then on the keyring is used only while it is open.
class DesktopKeyring final : public Keychain
{
    Q_OBJECT

public:
    explicit DesktopKeyring(RunLoop& runLoop);

    void read(const Item& item, QObject* context, Reader reader) override;
    void write(const Item& item, const QByteArray& secret, QObject* context, Completion completion) override;
    void remove(const Item& item, QObject* context, Completion completion) override;

private:
    enum class Kind { read, write, remove };
    struct Operation {
        Kind kind;
        Item item;
        QByteArray secret;
        QPointer<QObject> context;
        Reader reader;                     ///< empty once it has been answered
        std::unique_ptr<QObject> deadline; ///< ends with the operation
    };
    using Operations = std::list<Operation>;

    void add(Kind kind, const Item& item, const QByteArray& secret, QObject* context, Reader reader);
    void ownerChanged(const QString& owner);
    void startNext();
    void start();
    void run(QKeychain::Job* job, std::function<void(QKeychain::Job&)> ended);
    void readEnded(const QKeychain::Job& job);
    void removalEnded(const QKeychain::Job& job);
    void unlockAndRemove();
    void end(Status status, const QString& reason, const QByteArray& secret = {});
    void answer(Operation& operation, Status status, const QByteArray& secret = {});
    void note(Status status, const QString& reason);

    RunLoop& _runLoop;
    BusName _service;
    Operations _operations; ///< the first is under way
    bool _isBusy = false;
    bool _isRepeated = false; ///< the operation under way has failed once
    bool _wasRefused = false;
};
