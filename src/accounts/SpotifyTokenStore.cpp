// What the manager of the Spotify account has to do with the keychain.

#include "accounts/SpotifyAuthManager.h"

#include "base/Decimal.h"

namespace {

Keychain::Item item(const QString& account)
{
    return {.service = QStringLiteral("com.orvalen.pellar.spotify"), .account = account};
}

const QString accessTokenAccount = QStringLiteral("access_token");
const QString refreshTokenAccount = QStringLiteral("refresh_token");
const QString expiresAtAccount = QStringLiteral("expires_at");

} // namespace

/// The refresh token first: without it the others are of no use, and the user need not unlock anything for
/// them.
void SpotifyAuthManager::loadTokensFromKeychain()
{
    _isLoading = true;
    loadFromKeychain(refreshTokenAccount, [this](Keychain::Status status, const QByteArray& refreshToken) {
        if (status != Keychain::done || refreshToken.isEmpty()) {
            endLoading();
            return;
        }
        _refreshToken = QString::fromUtf8(refreshToken);
        loadFromKeychain(accessTokenAccount, [this](Keychain::Status found, const QByteArray& accessToken) {
            if (found == Keychain::done) {
                _accessToken = QString::fromUtf8(accessToken);
            }
        });
        loadFromKeychain(expiresAtAccount, [this](Keychain::Status found, const QByteArray& expiresAt) {
            const auto seconds = readDecimal(QString::fromUtf8(expiresAt));
            if (found == Keychain::done && seconds) {
                _expiresAt = Date{*seconds};
            }
            endLoading();
        });
        _isAuthorized = true;
    });
}

/// What comes after the account is connected anew, or no longer wanted, is dropped.
void SpotifyAuthManager::loadFromKeychain(const QString& account, Keychain::Reader reader)
{
    _from.keychain.read(
        item(account), _session.get(),
        [this, reader = std::move(reader)](Keychain::Status status, const QByteArray& secret) {
            if (_isLoading) {
                reader(status, secret);
            }
        });
}

void SpotifyAuthManager::endLoading()
{
    _isLoading = false;
    const auto waiting = std::exchange(_waitingForLoad, {});
    for (const auto& work : waiting) {
        work();
    }
}

/// One after the other: a user who does not unlock the keychain for the first is not asked for the next.
void SpotifyAuthManager::saveTokens()
{
    _isUnsaved = true;
    saveToKeychain(refreshTokenAccount, _refreshToken.value_or(QString()), [this] {
        saveToKeychain(accessTokenAccount, _accessToken.value_or(QString()), [this] {
            const QString expiresAt = _expiresAt ? decimalText(_expiresAt->sinceReference) : QString();
            saveToKeychain(expiresAtAccount, expiresAt, [this] { _isUnsaved = false; });
        });
    });
}

/// Goes on with `next` once the value is kept.
void SpotifyAuthManager::saveToKeychain(const QString& account, const QString& value,
                                        std::function<void()> next)
{
    if (value.isEmpty()) {
        next();
        return;
    }
    _from.keychain.write(item(account), value.toUtf8(), _session.get(),
                         [next = std::move(next)](Keychain::Status status) {
                             if (status == Keychain::done) {
                                 next();
                             }
                         });
}

void SpotifyAuthManager::deleteTokens()
{
    for (const QString& account : {accessTokenAccount, refreshTokenAccount, expiresAtAccount}) {
        deleteFromKeychain(account);
    }
}

void SpotifyAuthManager::deleteFromKeychain(const QString& account)
{
    _from.keychain.remove(item(account), _session.get(), [this](Keychain::Status status) {
        if (status != Keychain::done && status != Keychain::notFound) {
            _isUndeleted = true;
            _lastError =
                tr("The keyring is not open: it still has the account, which is back after the next start.");
        }
    });
}

/// Makes up for what a keychain has missed that is there, or open, at last.
void SpotifyAuthManager::keychainChanged()
{
    if (!_from.keychain.keepsSecrets()) {
        return;
    }
    if (_isUndeleted) {
        disconnect();
    } else if (_isUnsaved) {
        saveTokens();
    } else if (!_isAuthorized && !_isLoading) {
        loadTokensFromKeychain();
    }
}
