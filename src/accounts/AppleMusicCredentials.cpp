#include "accounts/AppleMusicCredentials.h"

#include "accounts/AppleMusicJWT.h"
#include "accounts/Resources.h"
#include "base/DebugLog.h"
#include "base/RunLoop.h"

#include <QDir>

QString AppleMusicCredentials::builtInTeamID()
{
    return QStringLiteral(PELLAR_MUSICKIT_TEAM_ID);
}

QString AppleMusicCredentials::builtInKeyID()
{
    return QStringLiteral(PELLAR_MUSICKIT_KEY_ID);
}

AppleMusicCredentials::AppleMusicCredentials(const RunLoop& clock, QString teamID, QString keyID)
    : _clock(clock)
    , _teamID(std::move(teamID))
    , _keyID(std::move(keyID))
{
}

std::optional<QString> AppleMusicCredentials::developerToken()
{
    constexpr double lifetime = 7'776'000; // seconds
    if (_developerToken) {
        return _developerToken;
    }
    if (_keyID == QStringLiteral("REPLACE_WITH_KEY_ID")) {
        dlog(QStringLiteral("keyID not configured yet"));
        return std::nullopt;
    }
    const auto pem = loadP8();
    if (!pem) {
        dlog(QStringLiteral("could not load .p8"));
        return std::nullopt;
    }
    const auto token = AppleMusicJWT::sign(*pem, _keyID, _teamID, lifetime, _clock.now());
    if (const auto* const error = std::get_if<AppleMusicJWT::SigningError>(&token)) {
        dlog(QStringLiteral("JWT signing failed: ") + AppleMusicJWT::name(*error));
        return std::nullopt;
    }
    _developerToken = std::get<QString>(token);
    dlog(QStringLiteral("dev token minted, len=%1").arg(_developerToken->size()));
    return _developerToken;
}

std::optional<QString> AppleMusicCredentials::loadP8()
{
    const QString name = QStringLiteral("Pellar_MusicKit.p8");
    const auto resource = resourcePath(name);
    const auto text = resource ? readText(*resource) : std::nullopt;
    return text ? text : readText(QDir::currentPath() + u'/' + name);
}
