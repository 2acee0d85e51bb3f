#include "updates/UpdaterManager.h"

#include "base/DebugLog.h"
#include "base/WebAddress.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "prefs/ServiceAddresses.h"
#include "updates/UpdateDownload.h"
#include "updates/UpdateSignature.h"
#include "updates/VersionComparison.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QSysInfo>

namespace {

constexpr double startDelay = 2;             // seconds
constexpr double day = 86'400;               // seconds
constexpr qsizetype longestFeed = 1'048'576; // bytes

const QString skippedKey = QStringLiteral("com.orvalen.pellar.updates.skippedVersion");

/// Seconds since 1970.
const QString remindKey = QStringLiteral("com.orvalen.pellar.updates.remindAfter");

/// Some systems have a name for their version, or none.
QString systemVersion()
{
    const QString version = QSysInfo::productVersion();
    return !version.isEmpty() && version.front().isDigit() ? version : QString();
}

} // namespace

UpdaterManager::UpdaterManager(const Dependencies& dependencies, Build build)
    : _defaults(dependencies.defaults)
    , _runLoop(dependencies.runLoop)
    , _workspace(dependencies.workspace)
    , _build(std::move(build))
{
    if (!isAvailable()) {
        dlog(QStringLiteral("Updates: this build has none"));
        return;
    }
    _runLoop.after(startDelay, this, [this] { checkForUpdatesInBackground(); });
    _daily = _runLoop.every(day, this, [this] { checkForUpdatesInBackground(); });
}

UpdaterManager::~UpdaterManager() = default;

UpdaterManager& UpdaterManager::shared()
{
    Platform& platform = Platform::current();
    UserDefaults& defaults = UserDefaults::standard();
    static auto* const instance = new UpdaterManager(
        {.defaults = defaults, .runLoop = platform.runLoop, .workspace = platform.workspace},
        {.feed = ServiceAddresses(defaults).updateFeed,
         .publicKey = QByteArray::fromBase64(PELLAR_UPDATE_KEY),
         .version = QCoreApplication::applicationVersion(),
         .systemVersion = systemVersion(),
         .folder =
             QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QStringLiteral("/updates")});
    return *instance;
}

bool UpdaterManager::isAvailable() const
{
    return isSecureAddress(QUrl(_build.feed, QUrl::StrictMode)) &&
           _build.publicKey.size() == UpdateSignature::keyLength;
}

void UpdaterManager::checkForUpdates()
{
    if (isAvailable()) {
        check(true);
    } else {
        _message = QStringLiteral("This build of Pellar has no updates.");
        _state = State::failed;
    }
    Q_EMIT askedFor();
}

void UpdaterManager::checkForUpdatesInBackground()
{
    // What the user has before his eyes stays there.
    if (isAvailable() && automaticChecksEnabled && _state == State::idle) {
        check(false);
    }
}

void UpdaterManager::check(bool isAskedFor)
{
    _isAskedFor |= isAskedFor;
    if (_download) {
        return;
    }
    if (_isAskedFor) {
        _state = State::checking;
    }
    if (_call) {
        return; // its answer is for the user now
    }
    HttpRequest request{.url = QUrl(_build.feed, QUrl::StrictMode),
                        .headers = {},
                        .body = {},
                        .byteLimit = longestFeed,
                        .isSecureOnly = true};
    if (!_http) {
        _http.emplace(_runLoop);
    }
    _call = _http->send(std::move(request), this, [this](const HttpReply& reply) {
        const auto call = std::move(_call);
        takeReply(reply);
    });
}

void UpdaterManager::takeReply(const HttpReply& reply)
{
    constexpr int ok = 200;
    QString why =
        reply.hasFailed() ? reply.failure : QStringLiteral("its server answers with %1").arg(reply.status);
    const bool hasCome = !reply.hasFailed() && reply.status == ok;
    const auto items = hasCome ? parseAppcast(reply.body, why) : std::nullopt;
    if (!items) {
        refuse(QStringLiteral("the feed cannot be read: ") + why);
    } else if (const auto newest = newestThatFits(*items, _build.systemVersion)) {
        consider(*newest);
    } else {
        dlog(QStringLiteral("Updates: the feed has nothing for this system"));
        answer(State::upToDate);
    }
}

void UpdaterManager::consider(const UpdateItem& item)
{
    const int order = compareVersions(item.version, _build.version);
    if (order <= 0) {
        if (order < 0) {
            dlog(QStringLiteral("Updates: refused %1, which is older than %2")
                     .arg(item.version, _build.version));
        }
        answer(State::upToDate);
    } else if (const QString why = fault(item); !why.isEmpty()) {
        refuse(QStringLiteral("refused %1: %2").arg(item.version, why));
    } else if (!_isAskedFor && isPutOff(item)) {
        answer(State::idle);
    } else {
        offer(item);
    }
}

/// Why an item cannot be installed, whatever is at its address; empty when it can.
QString UpdaterManager::fault(const UpdateItem& item) const
{
    if (item.signature.isEmpty()) {
        return QStringLiteral("it has no signature");
    }
    if (item.length <= 0 || item.length > UpdateDownload::lengthLimit) {
        return QStringLiteral("its length cannot be");
    }
    return isSecureAddress(item.address) ? QString() : QStringLiteral("it comes in the open");
}

bool UpdaterManager::isPutOff(const UpdateItem& item) const
{
    return _defaults.string(skippedKey) == item.version ||
           _defaults.real(remindKey).value_or(0) > _runLoop.now().sinceUnixEpoch();
}

void UpdaterManager::offer(const UpdateItem& item)
{
    _offer = item;
    _version = item.shortVersion;
    _notes = item.notes;
    answer(State::offered);
}

void UpdaterManager::install()
{
    if (_state != State::offered) {
        return;
    }
    _progress = 0;
    _state = State::downloading;
    _download = std::make_unique<UpdateDownload>(_runLoop, *_offer, _build.publicKey, _build.folder);
    // Queued: whoever hears of them may end the download, and does not hear of that one again.
    const auto hear = [this](auto signal, auto slot) {
        connect(
            _download.get(), signal, this,
            [this, download = _download.get(), slot](const auto& value) {
                if (_download.get() == download) {
                    slot(value);
                }
            },
            Qt::QueuedConnection);
    };
    hear(&UpdateDownload::progressed, [this](double progress) { _progress = progress; });
    hear(&UpdateDownload::finished, [this](const QString& path) { handOver(path); });
    hear(&UpdateDownload::failed, [this](const QString& reason) {
        _download.reset();
        fail(QStringLiteral("refused %1: %2").arg(_offer->version, reason));
    });
}

void UpdaterManager::handOver(const QString& path)
{
    const bool isOpened = _workspace.open(QUrl::fromLocalFile(path));
    if (isOpened) {
        _download->keep();
    }
    _download.reset();
    if (isOpened) {
        dlog(QStringLiteral("Updates: handed over ") + path);
        _state = State::handedOver;
    } else {
        fail(QStringLiteral("nothing here opens ") + path);
    }
}

/// Of an install, whose end the user waits for.
void UpdaterManager::fail(const QString& why)
{
    _isAskedFor = true;
    refuse(why);
}

void UpdaterManager::skip()
{
    if (_state == State::offered) {
        _defaults.setObject(skippedKey, _offer->version);
        _state = State::idle;
    }
}

void UpdaterManager::remindLater()
{
    if (_state == State::offered) {
        _defaults.setObject(remindKey, _runLoop.now().sinceUnixEpoch() + day);
        _state = State::idle;
    }
}

void UpdaterManager::cancel()
{
    _call.reset();
    _download.reset();
    _isAskedFor = false;
    _state = State::idle;
}

void UpdaterManager::refuse(const QString& why)
{
    dlog(QStringLiteral("Updates: ") + why);
    _message = why;
    answer(State::failed);
}

/// Ends a check. Only the user is told that there is nothing.
void UpdaterManager::answer(State state)
{
    const bool isAskedFor = std::exchange(_isAskedFor, false);
    _state = isAskedFor || state == State::offered ? state : State::idle;
}
