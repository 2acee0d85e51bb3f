#pragma once

#include "engine/PlayerScripts.h"
#include "platform/BundleId.h"
#include "support/EngineParts.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"

struct FakeDesktop {
    LogFile log;
    FakePlatform desktop;
    MemoryDefaults defaults;
};

/// An engine on a desktop of fakes. Players are set by what their status scripts reply.
struct EngineFixture : FakeDesktop, EngineParts {
    explicit EngineFixture(int sources = 7)
    {
        defaults.setObject(QStringLiteral("pellar.audio.sources"), qlonglong(sources));
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
        if (state == QStringLiteral("off")) {
            quit(player);
            return;
        }
        const QString song = player == Player::spotify
                                 ? QStringLiteral("Tide|||Shore|||Sea|||215000|||30.5|||%1||| ") + nobody
                                 : QStringLiteral("Song|||Band|||Album|||200.5|||12.0|||%1|||77");
        const QMap<QString, QString> replies = {
            {QStringLiteral("error"), QString()},
            {QStringLiteral("stopped"), QStringLiteral("STOPPED")},
            {QStringLiteral("paused"), song.arg(QStringLiteral("false"))},
            {QStringLiteral("playing"), song.arg(QStringLiteral("true"))}};
        reply(player, replies[state]);
    }

    void notify(Player player, const QVariantMap& info)
    {
        desktop.distributedNotifications.post(player == Player::spotify
                                                  ? QStringLiteral("com.spotify.client.PlaybackStateChanged")
                                                  : QStringLiteral("com.apple.Music.playerInfo"),
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
