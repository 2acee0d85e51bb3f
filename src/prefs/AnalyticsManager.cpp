#include "prefs/AnalyticsManager.h"

#include "base/DebugLog.h"
#include "base/RunLoop.h"
#include "base/WebAddress.h"
#include "platform/Platform.h"
#include "prefs/ServiceAddresses.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <QUuid>

namespace {

constexpr double day = 86'400; // seconds
constexpr double timeout = 60; // seconds

/// Of the system's release, else of its kernel, for those that have no releases.
int systemMajorVersion()
{
    const auto major = [](const QString& version) { return version.section(u'.', 0, 0).toInt(); };
    const int release = major(QSysInfo::productVersion());
    return release > 0 ? release : major(QSysInfo::kernelVersion());
}

} // namespace

const QString AnalyticsManager::installIdKey = QStringLiteral("com.orvalen.pellar.analytics.installId");
const QString AnalyticsManager::lastPingKey = QStringLiteral("com.orvalen.pellar.analytics.lastPing");
const QString AnalyticsManager::optOutKey = QStringLiteral("com.orvalen.pellar.analytics.optOut");

AnalyticsManager::AnalyticsManager(UserDefaults& defaults, RunLoop& runLoop, QString endpoint,
                                   QString version)
    : _defaults(defaults)
    , _runLoop(runLoop)
    , _endpoint(std::move(endpoint))
    , _version(std::move(version))
{
}

AnalyticsManager& AnalyticsManager::shared()
{
    UserDefaults& defaults = UserDefaults::standard();
    static auto* const instance =
        new AnalyticsManager(defaults, Platform::current().runLoop, ServiceAddresses(defaults).usagePing,
                             QCoreApplication::applicationVersion());
    return *instance;
}

void AnalyticsManager::setOptedOut(bool isOptedOut)
{
    _defaults.removeObject(lastPingKey);
    _isOptedOut = isOptedOut;
}

QString AnalyticsManager::installId()
{
    QString stored = readStored(_defaults, installIdKey, QString());
    if (!stored.isEmpty()) {
        return stored;
    }
    QString made = QUuid::createUuid().toString(QUuid::WithoutBraces);
    _defaults.setObject(installIdKey, made);
    return made;
}

void AnalyticsManager::pingIfNeeded()
{
    if (isOptedOut() || _endpoint.isEmpty()) {
        return;
    }
    const double now = _runLoop.now().sinceUnixEpoch();
    if (now - readStored(_defaults, lastPingKey, 0.0) >= day) {
        _defaults.setObject(lastPingKey, now);
        sendPing();
    }
}

void AnalyticsManager::sendPing()
{
    const QJsonObject body = {{QStringLiteral("installId"), installId()},
                              {QStringLiteral("app"), QStringLiteral("pellar")},
                              {QStringLiteral("version"), _version},
                              {QStringLiteral("osMajor"), systemMajorVersion()}};
    HttpRequest request{.url = QUrl(_endpoint, QUrl::StrictMode),
                        .method = HttpRequest::Method::post,
                        .headers = {{"Content-Type", "application/json"}},
                        .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
                        .timeout = timeout,
                        .isSecureOnly = true};
    if (!_http) {
        _http.emplace(_runLoop);
    }
    _call = _http->send(std::move(request), this, [](const HttpReply& reply) {
        if (reply.hasFailed()) {
            dlog(QStringLiteral("Analytics: the ping failed: %1").arg(reply.failure));
        }
    });
}
