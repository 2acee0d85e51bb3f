#include "ui/lyrics/LyricsDemand.h"

#include "engine/NowPlayingService.h"
#include "lyrics/LyricsService.h"

LyricsDemand::LyricsDemand(const NowPlayingService& service, LyricsService& lyrics) : _lyrics(lyrics)
{
    _wanted.setBinding([this, &service]() -> std::optional<LyricsRequest> {
        if (!_isShown) {
            return std::nullopt;
        }
        const Player player = service.activePlayer();
        if (player != Player::appleMusic && player != Player::spotify) {
            return LyricsRequest();
        }
        return LyricsRequest{service.title(), service.artist(), service.album()};
    });
    _wantedNotifier = _wanted.addNotifier([this] { ask(); });
}

void LyricsDemand::setShown(QObject* view, bool isShown)
{
    if (isShown && !_views.contains(view)) {
        _views.insert(view);
        connect(view, &QObject::destroyed, this, [this, view] { setShown(view, false); });
    } else if (!isShown && _views.remove(view)) {
        disconnect(view, nullptr, this, nullptr);
    }
    _isShown = !_views.isEmpty();
}

/// Of a lookup that is under way the answer is awaited: to ask again would begin it anew.
void LyricsDemand::ask()
{
    const auto wanted = _wanted.value();
    if (!wanted || (_lyrics.isLoading() && *wanted == _asked)) {
        return;
    }
    _asked = *wanted;
    _lyrics.fetch(_asked.title, _asked.artist, _asked.album);
}
