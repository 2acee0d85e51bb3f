#pragma once

#include "audio/PlayerChoice.h"
#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "linux/desktop/DesktopAutomation.h"
#include "linux/desktop/DesktopWorkspace.h"
#include "linux/mpris/MprisApplication.h"
#include "linux/mpris/MprisBus.h"
#include "linux/mpris/MprisPlayer.h"
#include "linux/mpris/PlayerNotifier.h"
#include "linux/mpris/PlayerRoster.h"
#include "linux/script/Interpreter.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"
#include "support/MprisStandIn.h"

/// A run loop whose seconds are a fraction of real ones, so that nobody waits for them.
class HastyLoop final : public RunLoop
{
public:
    static constexpr int haste = 3;

    Date now() const override { return _loop.now(); }
    Uptime uptime() const override { return {_loop.uptime().seconds * haste}; }
    void after(double seconds, QObject* context, Work work) override
    {
        _loop.after(seconds / haste, context, std::move(work));
    }
    std::unique_ptr<Timer> once(double seconds, QObject* context, Work work) override
    {
        return _loop.once(seconds / haste, context, std::move(work));
    }
    std::unique_ptr<Timer> every(double seconds, QObject* context, Work work) override
    {
        return _loop.every(seconds / haste, context, std::move(work));
    }

private:
    EventLoop _loop;
};

/// Everything between the bus and the portable rooms, and what is announced to them.
struct Mirror {
    explicit Mirror(const QString& address = {}) : bus(runLoop, address)
    {
        for (const auto& name :
             {u"com.apple.Music.playerInfo"_s, u"com.spotify.client.PlaybackStateChanged"_s}) {
            desktop.distributedNotifications.observe(name, &observer, [this, name](const QVariantMap& info) {
                posted << u"%1: %2 %3 by %4"_s.arg(name.section(u'.', 1, 1),
                                                   info[u"Player State"_s].toString(),
                                                   info[u"Name"_s].toString(), info[u"Artist"_s].toString());
                last = info;
            });
        }
    }

    MprisPlayer* music() const { return roster.player(PlayerRole::music); }
    QString title() const { return music() != nullptr ? music()->state().track.title : QString(); }

    /// The reply to a script; "none" without one, "error NUMBER" when the script failed.
    QString run(const QString& script)
    {
        const ScriptOutcome outcome = interpreter.run(script);
        return outcome.errorNumber ? u"error %1"_s.arg(*outcome.errorNumber)
                                   : outcome.reply.value_or(u"none"_s);
    }

    static QVariantMap song(const QString& title, const QString& artist = u"Band"_s, double seconds = 200)
    {
        return MprisStandIn::metadata(u"/t/"_s + QString::number(qHash(title)), title, artist, u"Album"_s,
                                      seconds);
    }

    HastyLoop runLoop;
    MemoryDefaults defaults;
    MprisBus bus;
    PlayerChoice casting{defaults};
    PlayerRoster roster{bus, casting};
    FakePlatform desktop;
    PlayerNotifier notifier{roster, desktop.distributedNotifications};
    DesktopWorkspace workspace{roster};
    DesktopAutomation automation{roster};
    std::shared_ptr<ScriptObject> musicApplication =
        std::make_shared<MprisApplication>(roster, PlayerRole::music);
    std::shared_ptr<ScriptObject> spotifyApplication =
        std::make_shared<MprisApplication>(roster, PlayerRole::spotify);
    Interpreter interpreter{[this](const QString& name) {
        return name == u"music"_s ? musicApplication : name == u"spotify"_s ? spotifyApplication : nullptr;
    }};
    Platform ports{.runLoop = runLoop,
                   .scripts = interpreter,
                   .automation = automation,
                   .workspace = workspace,
                   .power = desktop.power,
                   .pasteboard = desktop.pasteboard,
                   .keychain = desktop.keychain,
                   .statusBar = desktop.statusBar,
                   .floatingWindows = desktop.floatingWindows,
                   .appearance = desktop.appearance,
                   .audioHardware = desktop.audioHardware,
                   .eventTaps = desktop.eventTaps,
                   .mediaPlayers = roster,
                   .haptics = desktop.haptics,
                   .hotKeys = desktop.hotKeys,
                   .loginItem = desktop.loginItem,
                   .remoteRequests = desktop.remoteRequests,
                   .distributedNotifications = desktop.distributedNotifications,
                   .notifications = desktop.notifications};
    QObject observer;
    QStringList posted;
    QVariantMap last;
};
