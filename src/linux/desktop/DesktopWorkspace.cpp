#include "linux/desktop/DesktopWorkspace.h"

#include "linux/mpris/MprisPlayer.h"
#include "linux/mpris/PlayerRoster.h"
#include "linux/x11/X11Processes.h"

#include <QDesktopServices>
#include <QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.desktop", QtWarningMsg)

std::optional<PlayerRole> roleWithScheme(const QString& scheme)
{
    if (scheme == QStringLiteral("music")) {
        return PlayerRole::music;
    }
    return scheme == QStringLiteral("spotify") ? std::optional(PlayerRole::spotify) : std::nullopt;
}

} // namespace

DesktopWorkspace::DesktopWorkspace(PlayerRoster& roster) : _roster(roster)
{
    connect(&_roster, &PlayerRoster::appeared, this,
            [this](PlayerRole role) { Q_EMIT applicationLaunched(bundleId(role)); });
    connect(&_roster, &PlayerRoster::vanished, this,
            [this](PlayerRole role) { Q_EMIT applicationTerminated(bundleId(role)); });
    connect(&_roster, &PlayerRoster::moved, this,
            [this](PlayerRole role) { Q_EMIT playerMoved(bundleId(role)); });
    connect(&_roster, &PlayerRoster::outdated, this,
            [this](PlayerRole role) { Q_EMIT playerOutdated(bundleId(role)); });
}

/// Null when no such player runs.
MprisPlayer* DesktopWorkspace::player(const QString& bundleId) const
{
    const auto role = roleWithBundleId(bundleId);
    return role ? _roster.player(*role) : nullptr;
}

bool DesktopWorkspace::isRunning(const QString& bundleId) const
{
    return player(bundleId) != nullptr;
}

QString DesktopWorkspace::artworkAddress(const QString& bundleId) const
{
    const MprisPlayer* const player = this->player(bundleId);
    return player == nullptr ? QString() : player->state().track.artworkUrl;
}

std::optional<PlayerTrack> DesktopWorkspace::playerTrack(const QString& bundleId) const
{
    const MprisPlayer* const player = this->player(bundleId);
    if (player == nullptr || player->state().track.isBlank()) {
        return std::nullopt;
    }
    const MprisTrack& track = player->state().track;
    return PlayerTrack{.title = track.title,
                       .artist = track.artist,
                       .album = track.album,
                       .location = QUrl(track.location),
                       .lyrics = track.lyrics};
}

std::optional<PlaybackPosition> DesktopWorkspace::playbackPosition(const QString& bundleId) const
{
    const MprisPlayer* const player = this->player(bundleId);
    if (player == nullptr || !player->isReady()) {
        return std::nullopt;
    }
    return PlaybackPosition{.seconds = player->place(), .rate = player->rate()};
}

void DesktopWorkspace::checkPosition(const QString& bundleId)
{
    if (MprisPlayer* const player = this->player(bundleId)) {
        player->synchronise();
    }
}

PlayerAbilities DesktopWorkspace::abilities(const QString& bundleId) const
{
    MprisPlayer* const player = this->player(bundleId);
    if (player == nullptr) {
        return {};
    }
    // MPRIS cannot rate, and the key that saves a track in other versions of Spotify's own player is its
    // shuffle here.
    return {.canRate = false, .canListTracks = player->trackList().contains(player->state().track)};
}

std::optional<RunningApplication> DesktopWorkspace::frontmostApplication() const
{
    const auto processes = X11Processes::running();
    if (processes.empty() || !processes.front().isFrontmost) {
        return std::nullopt;
    }
    return RunningApplication{.processId = processes.front().unixId, .bundleId = processes.front().bundleId};
}

bool DesktopWorkspace::open(const QUrl& url)
{
    const auto role = roleWithScheme(url.scheme());
    if (MprisPlayer* const player = role ? _roster.player(*role) : nullptr) {
        player->raise();
        return true;
    }
    if (url.scheme() == QStringLiteral("x-apple.systempreferences")) {
        qCWarning(log, "this desktop has no settings for %ls", qUtf16Printable(url.query()));
        return false;
    }
    return QDesktopServices::openUrl(url);
}
