#pragma once

#include "base/Decimal.h"
#include "engine/PlayerScripts.h"
#include "platform/BundleId.h"
#include "support/EngineParts.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"

using namespace Qt::Literals::StringLiterals;

struct FakeDesktop {
    LogFile log;
    FakePlatform desktop;
    MemoryDefaults defaults;
};

/// An engine on a desktop of fakes. Players are set by what their status scripts reply.
struct EngineFixture : FakeDesktop, EngineParts {
    explicit EngineFixture(int sources = 7)
    {
        defaults.setObject(u"pellar.audio.sources"_s, qlonglong(sources));
    }

    /// Starts it with the players in these states.
    explicit EngineFixture(int sources, const QString& music, const QString& spotify = u"off"_s)
        : EngineFixture(sources)
    {
        setState(Player::appleMusic, music);
        setState(Player::spotify, spotify);
        start();
    }

    void start()
    {
        EngineParts::start(desktop.ports, defaults, std::move(unplugged),
                           {.refreshSpotifyQueue = [this] { ++queueRefreshes; },
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

    /// "off", "error", "stopped", "paused" or "playing"; a song of its own for each player.
    void setState(Player player, const QString& state)
    {
        const QString song = player == Player::spotify
                                 ? u"Tide|||Shore|||Sea|||215000|||30.5|||%1||| "_s + nobody
                                 : u"Song|||Band|||Album|||200.5|||12.0|||%1|||77"_s;
        if (state == u"off") {
            quit(player);
        } else if (state == u"playing" || state == u"paused") {
            reply(player, song.arg(boolText(state == u"playing")));
        } else {
            reply(player, state == u"stopped" ? u"STOPPED"_s : QString());
        }
    }

    /// Who is on show after the next refresh, so many seconds from now.
    Player followedAfter(double seconds)
    {
        desktop.runLoop.advance(seconds);
        service->refresh();
        return service->activePlayer();
    }

    void notify(Player player, const QVariantMap& info)
    {
        desktop.distributedNotifications.post(player == Player::spotify
                                                  ? u"com.spotify.client.PlaybackStateChanged"_s
                                                  : u"com.apple.Music.playerInfo"_s,
                                              info);
        desktop.runLoop.settle();
    }

    /// One frame of captured sound.
    void hear(float level)
    {
        Q_EMIT capture->liveChanged(true);
        Q_EMIT capture->bandsPublished({0, level, 0, 0});
    }

    /// The tracks that were played, the latest first: "Song|Band|Album|appleMusic".
    QStringList played() const
    {
        QStringList result;
        for (const PlayedTrack& track : recentlyPlayed->tracks()) {
            result << QStringList{track.title, track.artist, track.album, track.source}.join(u'|');
        }
        return result;
    }

    /// What is on show: "Song|Band|Album".
    QString shown() const
    {
        return QStringList{service->title(), service->artist(), service->album()}.join(u'|');
    }

    std::unique_ptr<FakeCapture> unplugged = std::make_unique<FakeCapture>();
    FakeCapture* capture = unplugged.get();
    int queueRefreshes = 0;
    QList<int> keys;
};
