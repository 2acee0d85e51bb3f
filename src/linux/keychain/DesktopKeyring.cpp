#include "linux/keychain/DesktopKeyring.h"

#include "base/DebugLog.h"
#include "base/RunLoop.h"
#include "linux/keychain/KeyringLock.h"

#include <QLibrary>

#include <qt6keychain/keychain.h>

namespace {

constexpr double patience = 30; // seconds for one operation

/// libsecret, which QtKeychain works with, goes on with the session it has with a keyring that has ended
/// since, and of which the next one knows nothing.
void forgetSession()
{
    using Disconnect = void (*)();
    if (const QFunctionPointer found =
            QLibrary::resolve(QStringLiteral("secret-1"), 0, "secret_service_disconnect")) {
        reinterpret_cast<Disconnect>(found)();
    }
}

Keychain::Status statusOf(const QKeychain::Job& job)
{
    switch (job.error()) {
    case QKeychain::NoError:
        return Keychain::done;
    case QKeychain::EntryNotFound:
        return Keychain::notFound;
    case QKeychain::AccessDenied:
    case QKeychain::AccessDeniedByUser:
        return Keychain::refused;
    default:
        return Keychain::failed;
    }
}

} // namespace

DesktopKeyring::DesktopKeyring(RunLoop& runLoop)
    : _runLoop(runLoop)
    , _service(QDBusConnection::sessionBus(), QStringLiteral("org.freedesktop.secrets"))
{
    connect(&_service, &BusName::ownerChanged, this, &DesktopKeyring::ownerChanged);
}

/// A keyring that has come is as good as any until it fails.
void DesktopKeyring::ownerChanged(const QString& owner)
{
    if (!owner.isEmpty()) {
        note(done, {});
    }
}

void DesktopKeyring::read(const Item& item, QObject* context, Reader reader)
{
    add(Kind::read, item, {}, context, std::move(reader));
}

void DesktopKeyring::write(const Item& item, const QByteArray& secret, QObject* context,
                           Completion completion)
{
    add(Kind::write, item, secret, context,
        [completion = std::move(completion)](Status status, const QByteArray& /*secret*/) {
            completion(status);
        });
}

void DesktopKeyring::remove(const Item& item, QObject* context, Completion completion)
{
    add(Kind::remove, item, {}, context,
        [completion = std::move(completion)](Status status, const QByteArray& /*secret*/) {
            completion(status);
        });
}

void DesktopKeyring::add(Kind kind, const Item& item, const QByteArray& secret, QObject* context,
                         Reader reader)
{
    const auto operation = _operations.insert(_operations.end(), {.kind = kind,
                                                                  .item = item,
                                                                  .secret = secret,
                                                                  .context = context,
                                                                  .reader = std::move(reader),
                                                                  .deadline = std::make_unique<QObject>()});
    _runLoop.after(patience, operation->deadline.get(), [this, operation] {
        note(noAnswer, QStringLiteral("the keyring does not answer"));
        answer(*operation, noAnswer);
    });
    _runLoop.after(0, this, [this] { startNext(); });
}

void DesktopKeyring::startNext()
{
    while (!_isBusy && !_operations.empty()) {
        const Operation& next = _operations.front();
        if (next.kind == Kind::read && (!next.reader || next.context.isNull())) {
            _operations.pop_front(); // nobody waits for it any more
            continue;
        }
        _isBusy = true;
        if (!_wasRefused) {
            start();
            return;
        }
        KeyringLock::whenKnown(this, [this](bool isLocked) {
            if (isLocked) {
                end(refused, QStringLiteral("the keyring is locked"));
            } else {
                _wasRefused = false;
                start();
            }
        });
    }
}

void DesktopKeyring::start()
{
    const Operation& operation = _operations.front();
    const QString& service = operation.item.service;
    const auto endAs = [this](const QKeychain::Job& job) { end(statusOf(job), job.errorString()); };
    switch (operation.kind) {
    case Kind::read:
        run(new QKeychain::ReadPasswordJob(service), [this](const QKeychain::Job& job) { readEnded(job); });
        break;
    case Kind::remove:
        run(new QKeychain::DeletePasswordJob(service),
            [this](const QKeychain::Job& job) { removalEnded(job); });
        break;
    case Kind::write:
        run(new QKeychain::DeletePasswordJob(service), [this, service, endAs](const QKeychain::Job& removal) {
            if (removal.error() != QKeychain::NoError && removal.error() != QKeychain::EntryNotFound) {
                endAs(removal);
                return;
            }
            auto* const addition = new QKeychain::WritePasswordJob(service);
            addition->setTextData(QString::fromUtf8(_operations.front().secret));
            run(addition, endAs);
        });
        break;
    }
}

void DesktopKeyring::run(QKeychain::Job* job, std::function<void(QKeychain::Job&)> ended)
{
    job->setKey(_operations.front().item.account);
    connect(job, &QKeychain::Job::finished, this,
            [ended = std::move(ended)](QKeychain::Job* finished) { ended(*finished); });
    job->start(); // deletes itself at its end
}

/// A locked item that the user does not unlock is reported as one that is not there.
void DesktopKeyring::readEnded(const QKeychain::Job& job)
{
    const Status status = statusOf(job);
    if (status == notFound) {
        KeyringLock::whenItemKnown(_operations.front().item, this, [this](bool isLocked) {
            end(isLocked ? refused : notFound, QStringLiteral("the keyring was not unlocked"));
        });
        return;
    }
    const auto* const reading = qobject_cast<const QKeychain::ReadPasswordJob*>(&job);
    end(status, job.errorString(), status == done ? reading->textData().toUtf8() : QByteArray());
}

/// A locked item is passed over without a word, and the user not asked to unlock it. It is when it is read.
void DesktopKeyring::removalEnded(const QKeychain::Job& job)
{
    const Status status = statusOf(job);
    if (status != done && status != notFound) {
        end(status, job.errorString());
        return;
    }
    KeyringLock::whenItemKnown(_operations.front().item, this, [this, status](bool isLocked) {
        if (isLocked) {
            unlockAndRemove();
        } else {
            end(status, {});
        }
    });
}

void DesktopKeyring::unlockAndRemove()
{
    const QString& service = _operations.front().item.service;
    run(new QKeychain::ReadPasswordJob(service), [this, service](const QKeychain::Job& reading) {
        if (statusOf(reading) != done) {
            end(refused, QStringLiteral("the keyring was not unlocked"));
            return;
        }
        run(new QKeychain::DeletePasswordJob(service),
            [this](const QKeychain::Job& removal) { end(statusOf(removal), removal.errorString()); });
    });
}

void DesktopKeyring::end(Status status, const QString& reason, const QByteArray& secret)
{
    if (status == failed && !std::exchange(_isRepeated, true)) {
        forgetSession();
        start();
        return;
    }
    _isRepeated = false;
    _wasRefused = _wasRefused || status == refused;
    note(status, reason);
    Operation operation = std::move(_operations.front());
    _operations.pop_front();
    operation.deadline.reset();
    _isBusy = false;
    answer(operation, status, secret);
    startNext();
}

void DesktopKeyring::answer(Operation& operation, Status status, const QByteArray& secret)
{
    const Reader reader = std::exchange(operation.reader, nullptr);
    if (reader && !operation.context.isNull()) {
        reader(status, secret);
    }
}

void DesktopKeyring::note(Status status, const QString& reason)
{
    const bool keeps = status == done || status == notFound;
    if (keeps != keepsSecrets()) {
        dlog(keeps ? QStringLiteral("Keychain: secrets are kept again")
                   : QStringLiteral("Keychain: secrets are not kept: ") + reason);
        setKeepsSecrets(keeps);
    }
}
