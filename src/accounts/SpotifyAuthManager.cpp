#include "accounts/SpotifyAuthManager.h"

#include "accounts/AccountsLog.h"
#include "accounts/LoopbackServer.h"
#include "accounts/Pkce.h"
#include "accounts/SpotifyCallback.h"
#include "accounts/TokenReply.h"
#include "base/DebugLog.h"
#include "base/Decimal.h"
#include "base/RunLoop.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

namespace {

constexpr double flowLimit = 600;         // seconds that the user has in the browser
constexpr double requestTimeout = 60;     // seconds
constexpr double leastTokenLifetime = 60; // seconds
const QString refreshTokenAccount = QStringLiteral("refresh_token");
const QString accessTokenAccount = QStringLiteral("access_token");
const QString expiresAtAccount = QStringLiteral("expires_at");
const QString callbackPath = QStringLiteral("/pellar-spotify-callback");

} // namespace

QString SpotifyAuthManager::redirectURI()
{
    return QStringLiteral("http://127.0.0.1:%1").arg(loopbackPort) + callbackPath;
}

QString SpotifyAuthManager::builtInClientId()
{
    return QStringLiteral(PELLAR_SPOTIFY_CLIENT_ID);
}

SpotifyAuthManager::SpotifyAuthManager(Dependencies dependencies)
    : _from(std::move(dependencies))
    , _secrets(_from.keychain, QStringLiteral("com.orvalen.pellar.spotify"),
               {refreshTokenAccount, accessTokenAccount, expiresAtAccount})
    , _http(_from.runLoop)
{
    connect(&_secrets, &AccountSecrets::loaded, this, &SpotifyAuthManager::tokensLoaded);
    connect(&_secrets, &AccountSecrets::removalFailed, this, [this] {
        _lastError =
            tr("The keyring is not open and still has the account: it is back after the next start.");
    });
    connect(&_secrets, &AccountSecrets::removed, this, [this] { _lastError = QString(); });
}

SpotifyAuthManager::~SpotifyAuthManager() = default;

SpotifyAuthManager& SpotifyAuthManager::shared()
{
    static auto* const instance =
        new SpotifyAuthManager({.runLoop = Platform::current().runLoop,
                                .keychain = Platform::current().keychain,
                                .workspace = Platform::current().workspace,
                                .addresses = ServiceAddresses(UserDefaults::standard()),
                                .clientId = builtInClientId()});
    return *instance;
}

bool SpotifyAuthManager::isConfigured() const
{
    return !_from.clientId.contains(QStringLiteral("REPLACE_WITH"));
}

void SpotifyAuthManager::tokensLoaded()
{
    if (!_isAuthorized && !_secrets.isEmpty()) {
        _refreshToken = _secrets.value(refreshTokenAccount);
        _accessToken = _secrets.value(accessTokenAccount);
        const auto expiresAt = readDecimal(_secrets.value(expiresAtAccount));
        _expiresAt = expiresAt ? std::optional(Date{*expiresAt}) : std::nullopt;
        _isAuthorized = true;
    }
    const auto waiting = std::exchange(_waitingForLoad, {});
    for (const auto& work : waiting) {
        work();
    }
}

void SpotifyAuthManager::saveTokens()
{
    _secrets.save({{refreshTokenAccount, _refreshToken.value_or(QString())},
                   {accessTokenAccount, _accessToken.value_or(QString())},
                   {expiresAtAccount, _expiresAt ? decimalText(_expiresAt->sinceReference) : QString()}});
}

void SpotifyAuthManager::startAuthorization()
{
    if (!isConfigured()) {
        systemLog(QStringLiteral("Spotify Client ID not set — auth aborted"));
        return;
    }
    endFlow({});
    _pendingCodeVerifier = Pkce::codeVerifier();
    if (!startLoopbackListener()) {
        return;
    }
    const auto address = webAddress(
        _from.addresses.spotifyAccounts, QStringLiteral("/authorize"),
        {{QStringLiteral("client_id"), _from.clientId},
         {QStringLiteral("response_type"), QStringLiteral("code")},
         {QStringLiteral("redirect_uri"), redirectURI()},
         {QStringLiteral("code_challenge_method"), QStringLiteral("S256")},
         {QStringLiteral("code_challenge"), Pkce::codeChallenge(*_pendingCodeVerifier)},
         {QStringLiteral("scope"), QStringLiteral("user-read-playback-state user-read-currently-playing "
                                                  "user-modify-playback-state")}});
    if (!address || !_from.workspace.open(*address)) {
        dlog(QStringLiteral("Spotify: no browser could be opened"));
        endFlow(tr("The browser could not be opened."));
        return;
    }
    _isAuthorizing = true;
}

bool SpotifyAuthManager::startLoopbackListener()
{
    _listener = std::make_unique<LoopbackServer>(
        _from.runLoop, [this](const QByteArray& requestLine) { return handleRequest(requestLine); });
    if (!_listener->listen(loopbackPort)) {
        systemLog(QStringLiteral("Failed to start loopback HTTP listener: ") + _listener->errorString());
        endFlow(tr("Port %1 of this computer is in use by another program.").arg(loopbackPort));
        return false;
    }
    _from.runLoop.after(flowLimit, _listener.get(), [this] {
        if (_pendingCodeVerifier) {
            endFlow(tr("Spotify was not connected within ten minutes."));
        }
    });
    return true;
}

std::optional<QByteArray> SpotifyAuthManager::handleRequest(const QByteArray& requestLine)
{
    const SpotifyCallback callback = parseCallback(requestLine);
    // Without a verifier the answer has been here before: a browser may ask twice. Without a code and the
    // path it is another request than ours, and the flow goes on.
    if (_pendingCodeVerifier && callback.code) {
        exchangeCodeForToken(*callback.code, *std::exchange(_pendingCodeVerifier, std::nullopt));
    } else if (_pendingCodeVerifier && callback.path == callbackPath) {
        endFlow(tr("Spotify did not grant access."));
    }
    return callbackReply(callback.code.has_value());
}

/// The listener is left to finish its answers.
void SpotifyAuthManager::endFlow(const QString& error)
{
    if (_listener) {
        _listener->close();
    }
    _pendingCodeVerifier.reset();
    _exchange.reset();
    _lastError = error;
    _isAuthorizing = false;
}

void SpotifyAuthManager::exchangeCodeForToken(const QString& code, const QString& codeVerifier)
{
    _listener->close();
    _exchange = askForToken({{QStringLiteral("client_id"), _from.clientId},
                             {QStringLiteral("grant_type"), QStringLiteral("authorization_code")},
                             {QStringLiteral("code"), code},
                             {QStringLiteral("redirect_uri"), redirectURI()},
                             {QStringLiteral("code_verifier"), codeVerifier}},
                            [this](const HttpReply& reply) { exchangeEnded(reply); });
}

void SpotifyAuthManager::exchangeEnded(const HttpReply& reply)
{
    const auto object = tokenReplyObject(reply);
    const bool isConnected = object && absorbTokenResponse(*object);
    if (isConnected) {
        _refresh.reset(); // it is of the account that was connected before
        answerWaiting(_accessToken);
    } else {
        dlog(QStringLiteral("Spotify: no token for the code: ") + tokenFailure(reply));
    }
    endFlow(isConnected ? QString() : tr("Spotify could not be reached, or refused the connection."));
}

std::unique_ptr<HttpCall> SpotifyAuthManager::askForToken(const QueryItems& parameters,
                                                          HttpCall::Completion completion)
{
    const QUrl address =
        webAddress(_from.addresses.spotifyAccounts, QStringLiteral("/api/token")).value_or(QUrl());
    return _http.send({.url = address,
                       .method = HttpRequest::Method::post,
                       .headers = {{"Content-Type", "application/x-www-form-urlencoded"}},
                       .body = formEncode(parameters),
                       .followsRedirects = false,
                       .timeout = requestTimeout},
                      this, std::move(completion));
}

void SpotifyAuthManager::getValidToken(QObject* context, TokenCompletion completion)
{
    if (_secrets.isLoading()) {
        _waitingForLoad.emplace_back(
            [this, guard = QPointer(context), completion = std::move(completion)]() mutable {
                if (!guard.isNull()) {
                    getValidToken(guard, std::move(completion));
                }
            });
        return;
    }
    if (_accessToken && _expiresAt && *_expiresAt - _from.runLoop.now() > leastTokenLifetime) {
        completion(_accessToken);
        return;
    }
    refreshAccessToken(context, std::move(completion));
}

void SpotifyAuthManager::refreshAccessToken(QObject* context, TokenCompletion completion)
{
    if (!_refreshToken) {
        completion(std::nullopt);
        return;
    }
    _waiting.emplace_back([guard = QPointer(context), completion = std::move(completion)](const auto& token) {
        if (!guard.isNull()) {
            completion(token);
        }
    });
    if (!_refresh) {
        _refresh = askForToken({{QStringLiteral("client_id"), _from.clientId},
                                {QStringLiteral("grant_type"), QStringLiteral("refresh_token")},
                                {QStringLiteral("refresh_token"), *_refreshToken}},
                               [this](const HttpReply& reply) { refreshEnded(reply); });
    }
}

void SpotifyAuthManager::refreshEnded(const HttpReply& reply)
{
    const auto ended = std::move(_refresh);
    const auto object = tokenReplyObject(reply);
    if (object && absorbTokenResponse(*object)) {
        answerWaiting(_accessToken);
        return;
    }
    dlog(QStringLiteral("Spotify: the token is not refreshed: ") + tokenFailure(reply));
    if (object && object->value(QStringLiteral("error")) == QStringLiteral("invalid_grant")) {
        forgetAccount();
        _lastError = tr("Spotify has ended the connection.");
    }
    answerWaiting(std::nullopt);
}

void SpotifyAuthManager::answerWaiting(const std::optional<QString>& token)
{
    const auto waiting = std::exchange(_waiting, {});
    for (const TokenCompletion& completion : waiting) {
        completion(token);
    }
}

/// False, and nothing is changed, when there is no token in the reply.
bool SpotifyAuthManager::absorbTokenResponse(const QJsonObject& reply)
{
    const auto accessToken = tokenOf(reply, QStringLiteral("access_token"));
    if (!accessToken) {
        return false;
    }
    _accessToken = accessToken;
    if (const auto refreshToken = tokenOf(reply, QStringLiteral("refresh_token"))) {
        _refreshToken = refreshToken;
    }
    if (const QJsonValue lifetime = reply.value(QStringLiteral("expires_in")); lifetime.isDouble()) {
        _expiresAt = _from.runLoop.now() + lifetime.toDouble();
    }
    _isAuthorized = true;
    saveTokens();
    return true;
}

void SpotifyAuthManager::disconnect()
{
    endFlow({});
    forgetAccount();
}

void SpotifyAuthManager::forgetAccount()
{
    _refresh.reset();
    _accessToken.reset();
    _refreshToken.reset();
    _expiresAt.reset();
    _isAuthorized = false;
    _secrets.clear();
    answerWaiting(std::nullopt);
}
