#pragma once

#include "ui/menu/ContextMenuRows.h"

#include <QStringList>

using namespace Qt::Literals::StringLiterals;

/// A menu with every section, whose commands write down what they are told.
struct MenuFixture {
    MenuFixture()
    {
        state.title = u"Salt & Stone"_s;
        state.artist = u"Ines"_s;
        state.activePlayer = Player::appleMusic;
        state.supportsLove = true;
        state.supportsDislike = true;
        state.upNext = {{u"Tide"_s, u"Shore"_s, 7}, {u"Solo"_s, {}, 8}};
        state.outputs = {{41, u"Speakers"_s, QString()}, {52, u"Headphones"_s, QString()}};
        state.currentOutput = 52;
        state.listening = {u"42m"_s, u"2h 5m"_s, 3, {}};
        for (const QChar artist : u"ABCDEF"_s) {
            state.listening->topArtists.append({artist, u"1m"_s});
        }
        state.recentlyPlayed = {{u"Harbour"_s, u"Ines"_s, QString(), {}, QString()},
                                {u"Untitled"_s, QString(), QString(), {}, QString()}};
        state.enabledSources = defaultAudioSources;

        const auto write = [this](const QString& line) { return [this, line] { told << line; }; };
        commands.togglePreview = write(u"preview"_s);
        commands.openInApp = write(u"open"_s);
        commands.copySongLink = write(u"link"_s);
        commands.loveTrack = write(u"love"_s);
        commands.unloveTrack = write(u"unlove"_s);
        commands.dislikeTrack = write(u"dislike"_s);
        commands.undislikeTrack = write(u"undislike"_s);
        commands.playUpNextTrack = [this](qint64 i) { told << u"play %1"_s.arg(i); };
        commands.setSleepTimer = [this](int minutes) { told << u"sleep %1"_s.arg(minutes); };
        commands.cancelSleepTimer = write(u"wake"_s);
        commands.setOutput = [this](quint32 id) { told << u"output %1"_s.arg(id); };
        commands.copyText = [this](const QString& text) { told << u"copy " + text; };
        commands.clearRecentlyPlayed = write(u"clear"_s);
        commands.setPowerMode = [this](PowerMode mode) { told << u"mode " + rawValue(mode); };
        commands.openPowerModeSettings = write(u"modes"_s);
        commands.toggleSource = [this](AudioSource source) {
            told << u"source %1"_s.arg(static_cast<int>(source));
        };
        commands.toggleWidget = write(u"widget"_s);
        commands.openSettings = write(u"settings"_s);
        commands.quit = write(u"quit"_s);
    }

    std::vector<PellarMenuItem> rows() const { return contextMenuRows(state, commands); }

    ContextMenuState state;
    ContextMenuCommands commands;
    QStringList told;
};
