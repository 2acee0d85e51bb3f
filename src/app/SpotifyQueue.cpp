#include "app/SpotifyQueue.h"

#include "accounts/SpotifyAPI.h"
#include "accounts/SpotifyAuthManager.h"
#include "base/NotificationCenter.h"

#include <utility>

SpotifyQueue::SpotifyQueue(std::function<bool()> isShown, NotificationCenter& notifications)
    : _isShown(std::move(isShown))
{
    notifications.observe(SpotifyAPI::queueRefreshedNotification, this,
                          [this](const QVariantMap& /*userInfo*/) { Q_EMIT changed(); });
}

SpotifyAPI& SpotifyQueue::api()
{
    if (!std::exchange(_followsAccount, true)) {
        connect(&SpotifyAuthManager::shared(), &SpotifyAuthManager::isAuthorizedChanged, this,
                &SpotifyQueue::accountChanged);
    }
    return SpotifyAPI::shared();
}

bool SpotifyQueue::isAuthorized()
{
    api();
    return SpotifyAuthManager::shared().isAuthorized();
}

void SpotifyQueue::refresh()
{
    api().refreshQueueAsync();
}

QList<UpNextTrack> SpotifyQueue::tracks()
{
    return api().cachedQueue();
}

void SpotifyQueue::refreshIfShown()
{
    if (_isShown() && isAuthorized()) {
        refresh();
    }
}

void SpotifyQueue::accountChanged()
{
    refreshIfShown();
    Q_EMIT changed();
}
