#pragma once

#include "audio/AudioBridge.h"
#include "audio/AudioCapture.h"
#include "audio/AudioSourceManager.h"
#include "engine/NowPlayingService.h"
#include "engine/PlayerScripts.h"
#include "platform/BundleId.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"

/// An engine on a desktop of fakes. Players are set by what their status scripts reply.
struct EngineFixture {
    explicit EngineFixture(int sources = 7)
    {
        defaults.setObject(QStringLiteral("pellar.audio.sources"), qlonglong(sources));
        defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"), nobody);
    }

    void start()
    {
        QObject::connect(&recentlyPlayed, &RecentlyPlayedManager::tracksChanged, &recentlyPlayed, [this] {
            for (const PlayedTrack& track : recentlyPlayed.tracks().mid(0, 1)) {
                told << u"played " + track.title + u'|' + track.artist + u'|' + track.album + u'|' +
                            track.source;
            }
        });
        bridge = std::make_unique<AudioBridge>(desktop.runLoop, defaults, std::move(unplugged));
        manager = std::make_unique<AudioSourceManager>(defaults, desktop.notifications, *bridge);
        power = std::make_unique<PowerModeManager>(defaults, desktop.power);
        service = std::make_unique<NowPlayingService>(
            NowPlayingService::Dependencies{.platform = desktop.ports,
                                            .defaults = defaults,
                                            .sources = *manager,
                                            .audio = *bridge,
                                            .power = *power,
                                            .theme = theme,
                                            .recentlyPlayed = recentlyPlayed},
            EngineNeighbours{.refreshSpotifyQueue = [this] { told << QStringLiteral("queue"); },
                             .sendMediaKey = [this](MediaKeys::Key key) { keys << static_cast<int>(key); }});
    }

    static QString bundle(Player player)
    {
        return player == Player::spotify ? BundleId::spotify : BundleId::music;
    }

    /// Makes a player run and reply this. An empty reply is an error.
    void reply(Player player, const QString& text)
    {
        desktop.workspace.running.insert(bundle(player));
        desktop.scripts.outcomes[PlayerScripts::status(player)] =
            text.isEmpty() ? ScriptOutcome{std::nullopt, -1728, QString()}
                           : ScriptOutcome{text, std::nullopt, QString()};
    }

    void quit(Player player) { desktop.workspace.running.remove(bundle(player)); }

    /// "off", "stopped", "paused" or "playing"; a song of its own for each player.
    void setState(Player player, const QString& state)
    {
        if (state == QStringLiteral("off")) {
            quit(player);
            return;
        }
        if (state == QStringLiteral("stopped")) {
            reply(player, QStringLiteral("STOPPED"));
            return;
        }
        const QString playing =
            state == QStringLiteral("playing") ? QStringLiteral("true") : QStringLiteral("false");
        if (player == Player::spotify) {
            reply(player,
                  QStringLiteral("Tide|||Shore|||Sea|||215000|||30.5|||%1||| %2/1 ").arg(playing, nobody));
        } else {
            reply(player, QStringLiteral("Song|||Band|||Album|||200.5|||12.0|||%1|||77").arg(playing));
        }
    }

    void notify(const QString& name, const QVariantMap& info)
    {
        desktop.distributedNotifications.post(name, info);
        desktop.runLoop.settle();
    }

    void notifyMusic(const QVariantMap& info) { notify(QStringLiteral("com.apple.Music.playerInfo"), info); }
    void notifySpotify(const QVariantMap& info)
    {
        notify(QStringLiteral("com.spotify.client.PlaybackStateChanged"), info);
    }

    /// One frame of captured sound.
    void hear(float level)
    {
        Q_EMIT capture->liveChanged(true);
        Q_EMIT capture->bandsPublished({0, level, 0, 0});
    }

    /// Brings the engine into system-audio mode on live sound.
    void enterSystemAudio()
    {
        hear(0.5F);
        desktop.scripts.take();
        log.take();
    }

    /// The address of a server that is not there.
    const QString nobody = QStringLiteral("http://127.0.0.1:1");

    LogFile log;
    FakePlatform desktop;
    MemoryDefaults defaults;
    std::unique_ptr<FakeCapture> unplugged = std::make_unique<FakeCapture>();
    FakeCapture* capture = unplugged.get();
    std::unique_ptr<AudioBridge> bridge;
    std::unique_ptr<AudioSourceManager> manager;
    std::unique_ptr<PowerModeManager> power;
    ThemeManager theme{defaults};
    RecentlyPlayedManager recentlyPlayed{defaults, desktop.runLoop};
    std::unique_ptr<NowPlayingService> service;
    QStringList told;
    QList<int> keys;
};
