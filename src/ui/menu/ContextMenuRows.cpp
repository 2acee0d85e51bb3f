#include "ui/menu/ContextMenuRows.h"

#include "base/ClockText.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace {

using Item = PellarMenuItem;
using Items = std::vector<PellarMenuItem>;

/// Builds the rows section by section.
class RowBuilder
{
    Q_DECLARE_TR_FUNCTIONS(ContextMenu)

public:
    RowBuilder(const ContextMenuState& state, const ContextMenuCommands& commands)
        : _state(state)
        , _commands(commands)
    {
    }

    Items rows();

private:
    void addTrack();
    void addReactions();
    void addUpNext();
    void addSleepTimer();
    void addOutputs();
    void addListening();
    void addRecentlyPlayed();
    void addPowerMode();
    void addSources();

    void add(Item item) { _rows.push_back(std::move(item)); }
    void addWithIcon(Item item, const QString& icon);
    void addSeparator() { add(Item::separator()); }

    const ContextMenuState& _state;
    const ContextMenuCommands& _commands;
    Items _rows;
};

/// Does nothing, and so is not shown, where the command is missing.
template<typename Value>
std::function<void()> with(const std::function<void(Value)>& command, const std::decay_t<Value>& value)
{
    return command ? std::function<void()>([command, value] { command(value); }) : nullptr;
}

QString named(const QString& title, const QString& artist)
{
    return artist.isEmpty() ? title : QStringLiteral("%1 — %2").arg(title, artist);
}

/// Names come from players and may hold line breaks. Each keeps its own direction of writing.
QString shown(const QString& title, const QString& artist)
{
    const auto isolated = [](const QString& name) {
        return name.isRightToLeft() ? QChar(0x2068) + name.simplified() + QChar(0x2069) : name.simplified();
    };
    return artist.isEmpty() ? title.simplified() : named(isolated(title), isolated(artist));
}

Items RowBuilder::rows()
{
    add(Item::header(_state.title.simplified()));
    if (!_state.artist.isEmpty()) {
        add(Item::info(_state.artist.simplified()));
    }
    addSeparator();
    if (_state.title != QStringLiteral("Not Playing")) {
        addTrack();
    }
    addSleepTimer();
    addOutputs();
    addSeparator();
    addListening();
    addRecentlyPlayed();
    addPowerMode();
    addSources();
    add(Item::toggle(_state.isWidgetShown ? tr("Hide Widget") : tr("Show Widget"), _state.isWidgetShown,
                     _commands.toggleWidget));
    add(Item::action(tr("Settings…"), _commands.openSettings));
    addSeparator();
    add(Item::action(tr("Quit Pellar"), _commands.quit));
    return presentable(_rows);
}

void RowBuilder::addWithIcon(Item item, const QString& icon)
{
    item.icon = icon;
    add(std::move(item));
}

void RowBuilder::addTrack()
{
    Item nowPlaying = Item::action(tr("Now Playing…"), _commands.togglePreview);
    nowPlaying.keyEquivalent = QKeySequence(Qt::Key_Space);
    add(std::move(nowPlaying));
    if (_state.activePlayer != Player::systemAudio) {
        add(Item::action(tr("Open in Music App"), _commands.openInApp));
    }
    add(Item::action(tr("Copy Song Link"), _commands.copySongLink));
    addReactions();
    addUpNext();
    addSeparator();
}

void RowBuilder::addReactions()
{
    if (!_state.showReactions) {
        return;
    }
    const auto [loved, disliked] = _state.reaction;
    if (_state.supportsLove) {
        const QString title = _state.activePlayer == Player::spotify ? tr("Save to Liked Songs")
                              : loved                                ? tr("Loved")
                                                                     : tr("Love Track");
        addWithIcon(Item::toggle(title, loved, loved ? _commands.unloveTrack : _commands.loveTrack),
                    loved ? QStringLiteral("heart.fill") : QStringLiteral("heart"));
    }
    if (_state.supportsDislike) {
        addWithIcon(Item::toggle(disliked ? tr("Suggesting Less") : tr("Suggest Less Like This"), disliked,
                                 disliked ? _commands.undislikeTrack : _commands.dislikeTrack),
                    disliked ? QStringLiteral("hand.thumbsdown.fill") : QStringLiteral("hand.thumbsdown"));
    }
}

void RowBuilder::addUpNext()
{
    if (!_state.showUpNext || !_state.upNext) {
        return;
    }
    Items tracks;
    for (const UpNextTrack& track : *_state.upNext) {
        tracks.push_back(Item::action(shown(track.title, track.artist),
                                      with(_commands.playUpNextTrack, track.playlistIndex)));
    }
    if (tracks.empty()) {
        tracks.push_back(Item::info(tr("Nothing Up Next")));
    }
    addWithIcon(Item::submenu(tr("Up Next"), std::move(tracks)), QStringLiteral("list.bullet"));
}

void RowBuilder::addSleepTimer()
{
    Items rows;
    for (const int minutes : {15, 30, 45, 60, 90}) {
        rows.push_back(Item::action(tr("%1 minutes").arg(minutes), with(_commands.setSleepTimer, minutes)));
    }
    rows.push_back(Item::separator());
    if (const auto remaining = _state.sleepTimerRemaining) {
        rows.push_back(Item::action(tr("Cancel Timer (%1 left)").arg(clockText(*remaining)),
                                    _commands.cancelSleepTimer));
    } else {
        rows.push_back(Item::info(tr("No Timer Active")));
    }
    add(Item::submenu(tr("Sleep Timer"), std::move(rows)));
}

void RowBuilder::addOutputs()
{
    Items devices;
    for (const AudioOutputDevice& output : _state.outputs) {
        devices.push_back(Item::toggle(output.name.simplified(), output.id == _state.currentOutput,
                                       with(_commands.setOutput, output.id)));
    }
    if (_state.outputs.isEmpty()) {
        devices.push_back(Item::info(tr("No Output Devices")));
    }
    add(Item::submenu(tr("Audio Output"), std::move(devices)));
}

void RowBuilder::addListening()
{
    if (!_state.showListeningStats || !_state.listening) {
        return;
    }
    constexpr qsizetype limit = 5;
    const ContextMenuState::Listening& listening = *_state.listening;
    Items rows = {
        Item::info(tr("Today: %1").arg(listening.today)), Item::info(tr("This Week: %1").arg(listening.week)),
        Item::info(
            (listening.streak == 1 ? tr("Streak: %1 day") : tr("Streak: %1 days")).arg(listening.streak)),
        Item::separator(), Item::header(tr("Top Artists"))};
    if (listening.topArtists.isEmpty()) {
        rows.push_back(Item::info(tr("No Artists Yet")));
    }
    for (qsizetype i = 0; i < std::min(limit, listening.topArtists.size()); ++i) {
        const auto& [name, time] = listening.topArtists[i];
        rows.push_back(
            Item::info(QStringLiteral("  %1. %2 (%3)").arg(QString::number(i + 1), name.simplified(), time)));
    }
    add(Item::submenu(tr("Listening Stats"), std::move(rows)));
}

void RowBuilder::addRecentlyPlayed()
{
    if (!_state.showRecentlyPlayed || !_state.recentlyPlayed) {
        return;
    }
    Items rows;
    for (const PlayedTrack& track : *_state.recentlyPlayed) {
        rows.push_back(Item::action(shown(track.title, track.artist),
                                    with(_commands.copyText, named(track.title, track.artist))));
    }
    rows.push_back(Item::separator());
    rows.push_back(Item::action(tr("Clear History"), _commands.clearRecentlyPlayed));
    add(Item::submenu(tr("Recently Played"), std::move(rows)));
    addSeparator();
}

void RowBuilder::addPowerMode()
{
    if (!_state.showPowerMode) {
        return;
    }
    Items rows;
    for (const auto& [mode, id, name] : Choices<PowerMode>::all) {
        rows.push_back(
            Item::toggle(displayName(mode), mode == _state.powerMode, with(_commands.setPowerMode, mode)));
    }
    if (_state.isSystemLowPower) {
        rows.push_back(Item::separator());
        rows.push_back(Item::info(tr("macOS Low Power Mode is on")));
    }
    rows.push_back(Item::separator());
    rows.push_back(Item::action(tr("Power Mode Settings…"), _commands.openPowerModeSettings));
    add(Item::submenu(tr("Power Mode (%1)").arg(displayName(_state.powerMode)), std::move(rows)));
}

void RowBuilder::addSources()
{
    if (!_state.showAudioSources) {
        return;
    }
    const std::array<std::pair<QString, AudioSource>, 3> sources = {{
        {tr("Apple Music"), AudioSource::appleMusic},
        {tr("Spotify"), AudioSource::spotify},
        {tr("System Audio"), AudioSource::systemAudio},
    }};
    Items rows;
    for (const auto& [title, source] : sources) {
        rows.push_back(Item::toggle(title, _state.enabledSources.testFlag(source),
                                    with(_commands.toggleSource, source)));
    }
    rows.push_back(Item::separator());
    rows.push_back(
        Item::toggle(tr("Live Visualizer"), _state.isLiveVisualizerOn, _commands.toggleLiveVisualizer));
    add(Item::submenu(tr("Audio Sources"), std::move(rows)));
}

} // namespace

std::vector<PellarMenuItem> contextMenuRows(const ContextMenuState& state,
                                            const ContextMenuCommands& commands)
{
    return RowBuilder(state, commands).rows();
}
