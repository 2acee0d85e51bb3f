#include "accounts/AccountSecrets.h"

#include <utility>

AccountSecrets::AccountSecrets(Keychain& keychain, QString service, QStringList accounts)
    : _keychain(keychain)
    , _service(std::move(service))
    , _accounts(std::move(accounts))
{
    connect(&_keychain, &Keychain::keepsSecretsChanged, this, &AccountSecrets::keychainChanged);
    load();
}

void AccountSecrets::load()
{
    _session = std::make_unique<QObject>();
    _isLoading = true;
    readNext(0);
}

void AccountSecrets::readNext(qsizetype index)
{
    if (index == _accounts.size()) {
        endLoading();
        return;
    }
    _keychain.read(item(index), _session.get(),
                   [this, index](Keychain::Status status, const QByteArray& secret) {
                       if (status == Keychain::done && !secret.isEmpty()) {
                           _values.insert(_accounts[index], QString::fromUtf8(secret));
                       }
                       readNext(_values.isEmpty() ? _accounts.size() : index + 1);
                   });
}

void AccountSecrets::endLoading()
{
    if (std::exchange(_isLoading, false)) {
        Q_EMIT loaded();
    }
}

void AccountSecrets::save(const QMap<QString, QString>& values)
{
    _session = std::make_unique<QObject>();
    _values = values;
    _isUnsaved = true;
    _isUndeleted = false;
    writeNext(0);
    endLoading();
}

/// One after the other: a user who does not unlock the keychain for the first is not asked for the next.
void AccountSecrets::writeNext(qsizetype index)
{
    if (index == _accounts.size()) {
        _isUnsaved = false;
        return;
    }
    const QString secret = value(_accounts[index]);
    if (secret.isEmpty()) {
        writeNext(index + 1);
        return;
    }
    _keychain.write(item(index), secret.toUtf8(), _session.get(), [this, index](Keychain::Status status) {
        if (status == Keychain::done) {
            writeNext(index + 1);
        } else {
            Q_EMIT writeFailed(status);
        }
    });
}

void AccountSecrets::clear()
{
    _session = std::make_unique<QObject>();
    _values.clear();
    _isUnsaved = false;
    const bool isRepeated = std::exchange(_isUndeleted, false);
    for (qsizetype i = 0; i < _accounts.size(); ++i) {
        const bool isLast = i == _accounts.size() - 1;
        _keychain.remove(item(i), _session.get(), [this, isRepeated, isLast](Keychain::Status status) {
            const bool isRemoved = status == Keychain::done || status == Keychain::notFound;
            if (!isRemoved && !std::exchange(_isUndeleted, true)) {
                Q_EMIT removalFailed();
            } else if (isLast && isRepeated && !_isUndeleted) {
                Q_EMIT removed();
            }
        });
    }
    endLoading();
}

void AccountSecrets::keychainChanged()
{
    if (!_keychain.keepsSecrets()) {
        return;
    }
    if (_isUndeleted) {
        clear();
    } else if (_isUnsaved) {
        writeNext(0);
    } else if (_values.isEmpty() && !_isLoading) {
        load();
    }
}
