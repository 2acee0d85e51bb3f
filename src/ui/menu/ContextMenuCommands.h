#pragma once

#include "audio/AudioSources.h"
#include "prefs/PowerMode.h"

#include <QString>

#include <functional>

/// What the rows of the context menu do. A row whose function is empty is not shown.
struct ContextMenuCommands {
    std::function<void()> togglePreview;
    std::function<void()> openInApp;
    std::function<void()> copySongLink;
    std::function<void()> loveTrack;
    std::function<void()> unloveTrack;
    std::function<void()> dislikeTrack;
    std::function<void()> undislikeTrack;
    std::function<void(qint64 playlistIndex)> playUpNextTrack;
    std::function<void(int minutes)> setSleepTimer;
    std::function<void()> cancelSleepTimer;
    std::function<void(quint32 id)> setOutput;
    std::function<void(const QString& text)> copyText;
    std::function<void()> clearRecentlyPlayed;
    std::function<void(PowerMode mode)> setPowerMode;
    std::function<void()> openPowerModeSettings;
    std::function<void(AudioSource source)> toggleSource;
    std::function<void()> toggleLiveVisualizer;
    std::function<void()> toggleWidget;
    std::function<void()> openSettings;
    std::function<void()> quit;
};
