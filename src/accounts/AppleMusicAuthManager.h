#pragma once

#include "accounts/AccountSecrets.h"
#include "accounts/AppleMusicAuthWindow.h"
#include "accounts/AppleMusicCredentials.h"
#include "base/NotificationCenter.h"

#include <vector>

/// The user's Apple Music account: connects it in a sign-in window, and keeps its user token in the keychain.
class AppleMusicAuthManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAuthorized READ isAuthorized NOTIFY isAuthorizedChanged BINDABLE bindableIsAuthorized)
    Q_PROPERTY(
        bool isAuthorizing READ isAuthorizing NOTIFY isAuthorizingChanged BINDABLE bindableIsAuthorizing)
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged BINDABLE bindableLastError)

public:
    struct Dependencies {
        AppleMusicAuthWindow::Dependencies window;
        Keychain& keychain;
        NotificationCenter& notifications;
        AppleMusicCredentials credentials;
    };
    using TokenCompletion = std::function<void(const std::optional<QString>& userToken)>;

    /// Posted after every token that is stored and every disconnect.
    static inline const QString authChangedNotification =
        QStringLiteral("com.orvalen.pellar.appleMusicAuthChanged");

    explicit AppleMusicAuthManager(Dependencies dependencies);
    ~AppleMusicAuthManager() override;
    static AppleMusicAuthManager& shared();

    /// Whether there is a user token.
    bool isAuthorized() const { return _isAuthorized; }
    QBindable<bool> bindableIsAuthorized() { return &_isAuthorized; }

    /// Whether the sign-in window is open.
    bool isAuthorizing() const { return _isAuthorizing; }
    QBindable<bool> bindableIsAuthorizing() { return &_isAuthorizing; }

    /// Why the last attempt to connect came to nothing; empty when it did not, or the user gave it up.
    QString lastError() const { return _lastError; }
    QBindable<QString> bindableLastError() { return &_lastError; }

    std::optional<QString> userToken() const;

    /// Hands the user token, once there is one: at once, or after the user has signed in in a window that
    /// opens for it. None when that comes to nothing. Never called once `context` is gone.
    void ensureAuthorized(QObject* context, const TokenCompletion& completion);

    /// Has the user sign in, also where there is a token, which the new one replaces.
    void reauthorize(QObject* context, const TokenCompletion& completion);

    /// Opens the window or brings it to the front. Where somebody waits for it already, whoever comes second
    /// gets nothing, at once.
    void openAuthWindow(QObject* context, const TokenCompletion& completion);

    /// `ensureAuthorized` for a view, which follows the properties.
    Q_INVOKABLE void connectAccount();

    /// Forgets the account, here and in the keychain.
    Q_INVOKABLE void disconnect();

    /// How the window's sign-in ended.
    void handleResult(const AuthResult& result);

Q_SIGNALS:
    void isAuthorizedChanged();
    void isAuthorizingChanged();
    void lastErrorChanged();

private:
    void tokenLoaded();
    void saveUserToken(const QString& token);

    Dependencies _from;
    AccountSecrets _secrets;
    AppleMusicAuthWindow* _authWindow = nullptr; ///< deletes itself after `dismiss`
    TokenCompletion _pendingContinuation;
    std::vector<std::function<void()>> _waitingForLoad;

    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(AppleMusicAuthManager, bool, _isAuthorized, false,
                                         &AppleMusicAuthManager::isAuthorizedChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(AppleMusicAuthManager, bool, _isAuthorizing, false,
                                         &AppleMusicAuthManager::isAuthorizingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(AppleMusicAuthManager, QString, _lastError,
                               &AppleMusicAuthManager::lastErrorChanged)
};
