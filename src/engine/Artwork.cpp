#include "base/HttpClient.h"
#include "engine/ArtworkImage.h"
#include "engine/ArtworkSearch.h"
#include "engine/NowPlayingService.h"
#include "platform/BundleId.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "prefs/ServiceAddresses.h"
#include "prefs/ThemeManager.h"

#include <QCryptographicHash>

namespace {

constexpr double searchSeconds = 4;
constexpr double longestLookup = 2; // seconds for which the cover of the track before may stay

/// The address, or a digest of one that holds the cover itself.
QString identity(const QString& address)
{
    constexpr qsizetype longest = 1024;
    return address.size() <= longest
               ? address
               : QString::fromLatin1(
                     QCryptographicHash::hash(address.toUtf8(), QCryptographicHash::Sha256).toHex());
}

} // namespace

void NowPlayingService::clearArtwork()
{
    _currentArtworkSource.clear();
    _wantedArtworkSource.clear();
    _artworkOwner = _trackOnShow = {};
    _isArtworkAwaited = false;
    _artwork = QImage();
    updateShownArtwork();
}

/// Notes the track on show and the address of its cover, empty when the player gives none. The same name with
/// another cover is another track.
void NowPlayingService::followArtworkOwner(const QString& address)
{
    ArtworkOwner owner{_activePlayer, _title, _artist, _album, address};
    if (address.isEmpty() && _trackOnShow.player == owner.player && _trackOnShow.title == owner.title &&
        _trackOnShow.artist == owner.artist && _trackOnShow.album == owner.album) {
        return; // the player no longer tells what it has told before
    }
    if (owner == _trackOnShow) {
        return;
    }
    _trackOnShow = std::move(owner);
    _wantedArtworkSource.clear();
    _isArtworkAwaited = true;
    _platform.runLoop.after(longestLookup, this, [this, round = ++_artworkRound] {
        if (round == _artworkRound) {
            _isArtworkAwaited = false;
            updateShownArtwork();
        }
    });
    updateShownArtwork();
}

void NowPlayingService::updateShownArtwork()
{
    const bool belongs = _artworkOwner == _trackOnShow;
    if (!belongs && _isArtworkAwaited) {
        return;
    }
    const QImage shown = belongs ? artwork() : QImage();
    if (shown.cacheKey() != shownArtwork().cacheKey()) {
        _shownArtwork = shown;
        _theme.updateArtwork(shown);
    }
}

/// The player's own cover comes first. Without one, or where it cannot be read, the search service is asked.
void NowPlayingService::fetchAppleMusicArtwork()
{
    const QString title = _title;
    const QString artist = _artist;
    const QString album = _album;
    if (_activePlayer != Player::appleMusic || title.isEmpty() || title == QStringLiteral("Not Playing")) {
        return; // another player may have taken over since this was called for
    }
    const QString cover = _platform.workspace.artworkAddress(BundleId::music);
    const QString key = QStringLiteral("am-its-") + artist + u'|' + title + u'|' + album;
    const QString service = ServiceAddresses(_defaults).artworkSearch;
    fetchArtwork(
        cover.isEmpty() ? key : key + u'|' + identity(cover),
        [=](const std::stop_token& stop) {
            const QImage own = cover.isEmpty() ? QImage() : loadArtwork(cover, stop);
            return own.isNull() ? lookupiTunesArtwork(service, title, artist, album, stop) : own;
        },
        [=, this] { return _activePlayer == Player::appleMusic && title == _title && artist == _artist; });
}

void NowPlayingService::fetchSpotifyArtwork(const QString& url)
{
    if (!url.isEmpty()) {
        fetchArtwork(
            identity(url), [url](const std::stop_token& stop) { return loadArtwork(url, stop); },
            [this] { return _activePlayer == Player::spotify; });
    }
}

QImage NowPlayingService::lookupiTunesArtwork(const QString& service, const QString& title,
                                              const QString& artist, const QString& album,
                                              const std::stop_token& stop)
{
    const auto search = artworkSearchAddress(service, title, artist);
    if (!search) {
        return {};
    }
    HttpRequest request;
    request.url = *search;
    request.timeout = searchSeconds;
    const auto artwork = chosenArtwork(HttpClient::sendAndWait(request, stop).body, album);
    return artwork ? loadArtwork(artwork->toString(QUrl::FullyEncoded), stop) : QImage();
}

/// Loads an artwork in the background, unless it is on show or the one asked for last. What was asked for
/// before is given up. It is asked for anew by the next poll when it fails.
void NowPlayingService::fetchArtwork(const QString& source, ArtworkLoad load, std::function<bool()> isWanted)
{
    _wantedArtworkSource = source;
    if (source == _currentArtworkSource) {
        _artworkOwner = _trackOnShow; // tracks of one album have one cover
        updateShownArtwork();
        return;
    }
    if (source == _requestedArtworkSource) {
        return;
    }
    _requestedArtworkSource = source;
    _artworkStop.request_stop();
    _artworkStop = {};
    _artworkQueue.async([this, source, owner = _trackOnShow, load = std::move(load),
                         isWanted = std::move(isWanted), stop = _artworkStop.get_token()] {
        const QImage image = stop.stop_requested() ? QImage() : load(stop);
        QMetaObject::invokeMethod(this, [this, source, owner, isWanted, image] {
            const bool isLatest = _requestedArtworkSource == source;
            if (isLatest) {
                _requestedArtworkSource.clear();
            }
            if (!image.isNull() && isWanted()) {
                _currentArtworkSource = source;
                _artworkOwner = source == _wantedArtworkSource ? _trackOnShow : owner;
                _artwork = image;
            }
            if (isLatest && source == _wantedArtworkSource) {
                _isArtworkAwaited = false;
            }
            updateShownArtwork();
        });
    });
}
