#include "accounts/AppleMusicAuthManager.h"

#include "base/DebugLog.h"
#include "base/RunLoop.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "prefs/ServiceAddresses.h"

namespace {

const QString tokenAccount = QStringLiteral("music-user-token");

} // namespace

AppleMusicAuthManager::AppleMusicAuthManager(Dependencies dependencies)
    : _from(std::move(dependencies))
    , _secrets(_from.keychain, QStringLiteral("com.orvalen.pellar.applemusic"), {tokenAccount})
{
    connect(&_secrets, &AccountSecrets::loaded, this, &AppleMusicAuthManager::tokenLoaded);
    connect(&_secrets, &AccountSecrets::writeFailed, this, [](Keychain::Status status) {
        dlog(QStringLiteral("keychain write failed: status=%1").arg(status));
    });
    connect(&_secrets, &AccountSecrets::removalFailed, this, [this] {
        _lastError =
            tr("The keyring is not open and still has the account: it is back after the next start.");
    });
    connect(&_secrets, &AccountSecrets::removed, this, [this] { _lastError = QString(); });
}

AppleMusicAuthManager::~AppleMusicAuthManager()
{
    delete _authWindow;
}

AppleMusicAuthManager& AppleMusicAuthManager::shared()
{
    Platform& platform = Platform::current();
    static auto* const instance = new AppleMusicAuthManager(
        {.window = {.runLoop = platform.runLoop,
                    .appearance = platform.appearance,
                    .musicKit = ServiceAddresses(UserDefaults::standard()).musicKit,
                    .program = AppleMusicAuthWindow::installedProgram()},
         .keychain = platform.keychain,
         .notifications = platform.notifications,
         .credentials = AppleMusicCredentials(platform.runLoop, AppleMusicCredentials::builtInTeamID(),
                                              AppleMusicCredentials::builtInKeyID())});
    return *instance;
}

void AppleMusicAuthManager::tokenLoaded()
{
    _isAuthorized = !_secrets.isEmpty();
    const auto waiting = std::exchange(_waitingForLoad, {});
    for (const auto& work : waiting) {
        work();
    }
}

std::optional<QString> AppleMusicAuthManager::userToken() const
{
    const QString token = _secrets.value(tokenAccount);
    return token.isEmpty() ? std::nullopt : std::optional(token);
}

void AppleMusicAuthManager::ensureAuthorized(QObject* context, const TokenCompletion& completion)
{
    if (_secrets.isLoading()) {
        _waitingForLoad.emplace_back([this, guard = QPointer(context), completion] {
            if (!guard.isNull()) {
                ensureAuthorized(guard, completion);
            }
        });
        return;
    }
    if (const auto token = userToken()) {
        completion(token);
        return;
    }
    openAuthWindow(context, completion);
}

void AppleMusicAuthManager::reauthorize(QObject* context, const TokenCompletion& completion)
{
    openAuthWindow(context, completion);
}

void AppleMusicAuthManager::connectAccount()
{
    ensureAuthorized(this, [](const std::optional<QString>& /*token*/) {});
}

void AppleMusicAuthManager::openAuthWindow(QObject* context, const TokenCompletion& completion)
{
    const auto guarded = [guard = QPointer(context), completion](const std::optional<QString>& token) {
        if (!guard.isNull()) {
            completion(token);
        }
    };
    if (_authWindow != nullptr) {
        dlog(QStringLiteral("openAuthWindow: window exists, re-presenting"));
        if (!_authWindow->didLoadPage()) {
            _authWindow->loadAuthPage();
        }
        _authWindow->present();
        if (_pendingContinuation) {
            completion(std::nullopt);
        } else {
            _pendingContinuation = guarded;
        }
        return;
    }
    const auto developerToken = _from.credentials.developerToken();
    if (!developerToken) {
        dlog(QStringLiteral("no developer token — Apple Music auth disabled"));
        _lastError = tr("This build of Pellar cannot connect Apple Music.");
        completion(std::nullopt);
        return;
    }
    dlog(QStringLiteral("openAuthWindow()"));
    _lastError = QString();
    _isAuthorizing = true;
    _pendingContinuation = guarded;
    _authWindow = new AppleMusicAuthWindow(_from.window, *developerToken,
                                           [this](const AuthResult& result) { handleResult(result); });
    _authWindow->loadAuthPage();
    if (_authWindow != nullptr) { // it has not failed already
        _authWindow->present();
    }
}

void AppleMusicAuthManager::handleResult(const AuthResult& result)
{
    const bool isSuccess = result.kind == AuthResult::Kind::success;
    if (isSuccess) {
        saveUserToken(result.text);
    } else if (result.kind == AuthResult::Kind::cancelled) {
        dlog(QStringLiteral("auth cancelled"));
    } else {
        dlog(QStringLiteral("auth error: ") + result.text);
        _lastError = result.text;
    }
    if (AppleMusicAuthWindow* const window = std::exchange(_authWindow, nullptr)) {
        window->dismiss();
    }
    _isAuthorizing = false;
    if (const TokenCompletion waiting = std::exchange(_pendingContinuation, nullptr)) {
        waiting(isSuccess ? std::optional(result.text) : std::nullopt);
    }
}

void AppleMusicAuthManager::saveUserToken(const QString& token)
{
    _secrets.save({{tokenAccount, token}});
    _isAuthorized = true;
    dlog(QStringLiteral("MUT stored, len=%1").arg(token.size()));
    _from.notifications.post(authChangedNotification);
}

void AppleMusicAuthManager::disconnect()
{
    _secrets.clear();
    _from.window.runLoop.after(0, this, [this] {
        _isAuthorized = !_secrets.isEmpty();
        _from.notifications.post(authChangedNotification);
    });
}
