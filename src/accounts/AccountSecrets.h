#pragma once

#include "platform/Keychain.h"

#include <QMap>
#include <QStringList>

#include <memory>

/// The secrets of one connected account: in memory, and in the keychain as far as that keeps them. What the
/// keychain misses while it is away or locked is made up for when it is back.
class AccountSecrets : public QObject
{
    Q_OBJECT

public:
    /// `accounts` names the items of the service. The first is the one without which the others are of no
    /// use: where it is not there, or the user does not unlock it, nobody is asked for the others.
    AccountSecrets(Keychain& keychain, QString service, QStringList accounts);

    /// Whether the keychain has still to say what it holds.
    bool isLoading() const { return _isLoading; }

    /// Empty when there is none.
    QString value(const QString& account) const { return _values.value(account); }
    bool isEmpty() const { return _values.isEmpty(); }

    /// Replaces all values. Empty ones are not stored.
    void save(const QMap<QString, QString>& values);
    void clear();

Q_SIGNALS:
    /// `isLoading` is over. The values are those of the keychain, unless others were saved meanwhile.
    void loaded();
    void writeFailed(Keychain::Status status);
    void removalFailed();

    /// The keychain, which had not removed them at first, has done so now.
    void removed();

private:
    Keychain::Item item(qsizetype index) const { return {.service = _service, .account = _accounts[index]}; }
    void load();
    void readNext(qsizetype index);
    void endLoading();
    void writeNext(qsizetype index);
    void keychainChanged();

    Keychain& _keychain;
    const QString _service;
    const QStringList _accounts;
    QMap<QString, QString> _values;
    std::unique_ptr<QObject> _session; ///< what is asked of the keychain for other values ends with it
    bool _isLoading = false;
    bool _isUnsaved = false;
    bool _isUndeleted = false;
};
