#pragma once

#include "ui/menu/ContextMenuRows.h"

#include <QStringList>

/// A menu with every section, whose commands write down what they are told.
struct MenuFixture {
    MenuFixture()
    {
        state.title = QStringLiteral("Salt & Stone");
        state.artist = QStringLiteral("Ines");
        state.activePlayer = Player::appleMusic;
        state.supportsLove = true;
        state.supportsDislike = true;
        state.upNext = {{QStringLiteral("Tide"), QStringLiteral("Shore"), 7},
                        {QStringLiteral("Solo"), {}, 8}};
        state.outputs = {{41, QStringLiteral("Speakers"), QString()},
                         {52, QStringLiteral("Headphones"), QString()}};
        state.currentOutput = 52;
        state.listening = {QStringLiteral("42m"),
                           QStringLiteral("2h 5m"),
                           3,
                           {{QStringLiteral("A"), QStringLiteral("5m")},
                            {QStringLiteral("B"), QStringLiteral("4m")},
                            {QStringLiteral("C"), QStringLiteral("3m")},
                            {QStringLiteral("D"), QStringLiteral("2m")},
                            {QStringLiteral("E"), QStringLiteral("1m")},
                            {QStringLiteral("F"), QStringLiteral("0m")}}};
        state.recentlyPlayed = {{QStringLiteral("Harbour"), QStringLiteral("Ines"), QString(), {}, QString()},
                                {QStringLiteral("Untitled"), QString(), QString(), {}, QString()}};
        state.enabledSources = defaultAudioSources;

        const auto write = [this](const QString& line) { return [this, line] { told << line; }; };
        commands.togglePreview = write(QStringLiteral("preview"));
        commands.openInApp = write(QStringLiteral("open"));
        commands.copySongLink = write(QStringLiteral("link"));
        commands.loveTrack = write(QStringLiteral("love"));
        commands.unloveTrack = write(QStringLiteral("unlove"));
        commands.dislikeTrack = write(QStringLiteral("dislike"));
        commands.undislikeTrack = write(QStringLiteral("undislike"));
        commands.playUpNextTrack = [this](qint64 i) { told << QStringLiteral("play %1").arg(i); };
        commands.setSleepTimer = [this](int minutes) { told << QStringLiteral("sleep %1").arg(minutes); };
        commands.cancelSleepTimer = write(QStringLiteral("wake"));
        commands.setOutput = [this](quint32 id) { told << QStringLiteral("output %1").arg(id); };
        commands.copyText = [this](const QString& text) { told << u"copy " + text; };
        commands.clearRecentlyPlayed = write(QStringLiteral("clear"));
        commands.setPowerMode = [this](PowerMode mode) { told << u"mode " + rawValue(mode); };
        commands.openPowerModeSettings = write(QStringLiteral("modes"));
        commands.toggleSource = [this](AudioSource source) {
            told << QStringLiteral("source %1").arg(static_cast<int>(source));
        };
        commands.toggleWidget = write(QStringLiteral("widget"));
        commands.openSettings = write(QStringLiteral("settings"));
        commands.quit = write(QStringLiteral("quit"));
    }

    std::vector<PellarMenuItem> rows() const { return contextMenuRows(state, commands); }

    ContextMenuState state;
    ContextMenuCommands commands;
    QStringList told;
};
