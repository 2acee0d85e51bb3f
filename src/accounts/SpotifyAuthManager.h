#pragma once

#include "accounts/AccountSecrets.h"
#include "base/Date.h"
#include "base/HttpClient.h"
#include "base/WebAddress.h"
#include "prefs/ServiceAddresses.h"

#include <QJsonObject>
#include <QProperty>

#include <optional>
#include <vector>

class LoopbackServer;
class Workspace;

/// The user's Spotify account: connects it in the browser, and keeps what Spotify hands out for that in the
/// keychain. A keychain that does not keep it costs nothing but that the account has to be connected again
/// after the next start.
class SpotifyAuthManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAuthorized READ isAuthorized NOTIFY isAuthorizedChanged BINDABLE bindableIsAuthorized)
    Q_PROPERTY(
        bool isAuthorizing READ isAuthorizing NOTIFY isAuthorizingChanged BINDABLE bindableIsAuthorizing)
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged BINDABLE bindableLastError)
    Q_PROPERTY(bool isConfigured READ isConfigured CONSTANT)

public:
    struct Dependencies {
        RunLoop& runLoop;
        Keychain& keychain;
        Workspace& workspace;
        ServiceAddresses addresses;
        QString clientId;
    };
    using TokenCompletion = std::function<void(const std::optional<QString>& token)>;

    static constexpr quint16 loopbackPort = 7421;
    static QString redirectURI();

    /// The one that this build of the program is registered under.
    static QString builtInClientId();

    explicit SpotifyAuthManager(Dependencies dependencies);
    ~SpotifyAuthManager() override;
    static SpotifyAuthManager& shared();

    /// Whether an account is connected.
    bool isAuthorized() const { return _isAuthorized; }
    QBindable<bool> bindableIsAuthorized() { return &_isAuthorized; }

    /// From `startAuthorization` until the browser has come back and Spotify has answered, ten minutes at
    /// most.
    bool isAuthorizing() const { return _isAuthorizing; }
    QBindable<bool> bindableIsAuthorizing() { return &_isAuthorizing; }

    /// Why the account is not connected, or no longer, for the user; empty when nothing went wrong.
    QString lastError() const { return _lastError; }
    QBindable<QString> bindableLastError() { return &_lastError; }

    /// False in a build without a client identifier of Spotify's: it can connect no account.
    bool isConfigured() const;

    /// Opens Spotify's page in the browser and waits for its answer. A flow that is under way ends.
    Q_INVOKABLE void startAuthorization();

    /// Hands a token that is good for another minute at least, refreshed where needed; at once where it is
    /// not. None when there is none to be had. Never called once `context` is gone.
    void getValidToken(QObject* context, TokenCompletion completion);

    /// Has the token replaced. Whoever asks while that is under way gets the same answer.
    void refreshAccessToken(QObject* context, TokenCompletion completion);

    /// Forgets the account, here and in the keychain.
    Q_INVOKABLE void disconnect();

Q_SIGNALS:
    void isAuthorizedChanged();
    void isAuthorizingChanged();
    void lastErrorChanged();

private:
    void tokensLoaded();
    void saveTokens();

    bool startLoopbackListener();
    std::optional<QByteArray> handleRequest(const QByteArray& requestLine);
    void endFlow(const QString& error);
    void exchangeCodeForToken(const QString& code, const QString& codeVerifier);
    void exchangeEnded(const HttpReply& reply);
    void refreshEnded(const HttpReply& reply);
    std::unique_ptr<HttpCall> askForToken(const QueryItems& parameters, HttpCall::Completion completion);
    bool absorbTokenResponse(const QJsonObject& reply);
    void forgetAccount();
    void answerWaiting(const std::optional<QString>& token);

    Dependencies _from;
    AccountSecrets _secrets;
    HttpClient _http;
    std::optional<QString> _accessToken;
    std::optional<QString> _refreshToken;
    std::optional<Date> _expiresAt;
    std::optional<QString> _pendingCodeVerifier;
    std::unique_ptr<LoopbackServer> _listener;
    std::unique_ptr<HttpCall> _exchange;
    std::unique_ptr<HttpCall> _refresh;
    std::vector<TokenCompletion> _waiting; ///< for the refresh
    std::vector<std::function<void()>> _waitingForLoad;

    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SpotifyAuthManager, bool, _isAuthorized, false,
                                         &SpotifyAuthManager::isAuthorizedChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SpotifyAuthManager, bool, _isAuthorizing, false,
                                         &SpotifyAuthManager::isAuthorizingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(SpotifyAuthManager, QString, _lastError, &SpotifyAuthManager::lastErrorChanged)
};
