#include "platform/linux/DesktopEventTaps.h"

#include "platform/SystemDefinedEvent.h"
#include "platform/linux/mpris/MprisBus.h"
#include "platform/linux/mpris/MprisPlayer.h"
#include "platform/linux/mpris/PlayerRoster.h"
#include "platform/linux/x11/X11MediaKey.h"

#include <QLoggingCategory>

#include <algorithm>
#include <tuple>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.keyboard", QtWarningMsg)

struct MediaKey {
    int code; ///< of the auxiliary-control keys
    X11MediaKey::Symbol symbol;
    void (MprisPlayer::*command)();
};

constexpr MediaKey mediaKeys[] = {
    {16, X11MediaKey::Symbol::play, &MprisPlayer::playPause},
    {17, X11MediaKey::Symbol::next, &MprisPlayer::next},
    {18, X11MediaKey::Symbol::previous, &MprisPlayer::previous},
};

constexpr quint32 keyDown = 0xA;

} // namespace

DesktopEventTaps::DesktopEventTaps(const MprisBus& bus, const PlayerRoster& roster)
    : _bus(bus)
    , _roster(roster)
{
}

void DesktopEventTaps::post(const SystemDefinedEvent& event, Tap tap)
{
    if (tap != Tap::hid || event.subtype != SystemDefinedEvent::auxiliaryControl) {
        return;
    }
    const auto data = static_cast<quint32>(event.data1);
    if ((data >> 8U & 0xFFU) == keyDown) {
        press(static_cast<int>(data >> 16U));
    }
}

void DesktopEventTaps::press(int key)
{
    const auto* const found = std::find_if(std::begin(mediaKeys), std::end(mediaKeys),
                                           [key](const MediaKey& each) { return each.code == key; });
    if (found == std::end(mediaKeys)) {
        return;
    }
    const auto keycode = X11MediaKey::find(found->symbol);
    MprisPlayer* const player = target();
    if (player != nullptr && !(keycode && X11MediaKey::isGrabbed(*keycode))) {
        _addressed = player->uniqueName();
        (player->*found->command)();
    } else if (keycode) {
        X11MediaKey::tap(*keycode);
    } else {
        qCWarning(log, "nothing takes media keys here");
    }
}

/// The player that began to play last. When none plays, the one that was addressed last, which has obeyed,
/// else the one that played last of those in no role: Music and Spotify, at rest, are not what sounds.
MprisPlayer* DesktopEventTaps::target() const
{
    const auto rank = [this](const MprisPlayer* player) {
        const bool isPlaying = player->isPlaying();
        return std::tuple(isPlaying, isPlaying || player->uniqueName() == _addressed,
                          isPlaying ? player->playingSince() : player->lastPlayed());
    };
    MprisPlayer* best = nullptr;
    const auto players = _bus.players();
    for (MprisPlayer* const player : players) {
        const bool isProxy = player->suffixes.contains(QStringLiteral("playerctld"));
        const bool isAtRest = !player->isPlaying() && player->uniqueName() != _addressed &&
                              (_roster.hasRole(player) || player->lastPlayed() == Date::distantPast());
        const bool isReachable = player->isReady() && !player->isRefused();
        if (isReachable && !isProxy && !isAtRest && (best == nullptr || rank(best) < rank(player))) {
            best = player;
        }
    }
    return best;
}
