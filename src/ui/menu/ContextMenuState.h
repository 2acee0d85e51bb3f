#pragma once

#include "audio/AudioOutputDevice.h"
#include "audio/AudioSources.h"
#include "engine/Player.h"
#include "engine/TrackReaction.h"
#include "prefs/PlayedTrack.h"
#include "prefs/PowerMode.h"
#include "prefs/UpNextTrack.h"

#include <QList>
#include <QString>

#include <optional>

/// Everything that the context menu shows, at the time it opens.
struct ContextMenuState {
    /// The listening statistics; times as they are shown, "42m" or "2h 5m".
    struct Listening {
        struct Artist {
            QString name;
            QString time;
        };

        QString today;
        QString week;
        int streak = 0;           ///< days
        QList<Artist> topArtists; ///< the most heard first; five at most are shown
    };

    QString title; ///< "Not Playing" when nothing plays
    QString artist;
    Player activePlayer = Player::none;
    bool supportsLove = false;
    bool supportsDislike = false;
    TrackReaction reaction;

    /// None when the active player has no list that can be shown.
    std::optional<QList<UpNextTrack>> upNext;

    std::optional<double> sleepTimerRemaining; ///< seconds; none when no timer runs

    QList<AudioOutputDevice> outputs;
    quint32 currentOutput = 0; ///< 0 when it is not known

    std::optional<Listening> listening;               ///< none when nobody counts
    std::optional<QList<PlayedTrack>> recentlyPlayed; ///< newest first; none when nobody keeps a list

    PowerMode powerMode = PowerMode::normal; ///< the one in force
    bool isSystemLowPower = false;
    AudioSources enabledSources;
    bool isLiveVisualizerOn = false;
    bool isWidgetShown = false;

    bool showUpNext = true;
    bool showReactions = true;
    bool showPowerMode = true;
    bool showAudioSources = true;
    bool showListeningStats = true;
    bool showRecentlyPlayed = true;
};
