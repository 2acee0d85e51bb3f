#include "engine/PlayerScripts.h"

#include "base/Decimal.h"

namespace {

QString command(Player player, const QString& text)
{
    return QStringLiteral("tell application \"%1\" to %2").arg(PlayerScripts::applicationName(player), text);
}

} // namespace

QString PlayerScripts::applicationName(Player player)
{
    switch (player) {
    case Player::appleMusic:
        return QStringLiteral("Music");
    case Player::spotify:
        return QStringLiteral("Spotify");
    case Player::systemAudio:
    case Player::none:
        break;
    }
    return {};
}

QString PlayerScripts::status(Player player)
{
    const bool isMusic = player == Player::appleMusic;
    const QString last = isMusic ? QStringLiteral("tID") : QStringLiteral("tArt");
    const QString lastValue = isMusic ? QStringLiteral("database ID of current track as text")
                                      : QStringLiteral("artwork url of current track");
    return QStringLiteral(R"(tell application "%1"
    try
        if player state is stopped then return "STOPPED"
        set tName to name of current track
        set tArtist to artist of current track
        set tAlbum to album of current track
        set tDur to duration of current track
        set tPos to player position
        set tPlaying to (player state is playing) as text
        set %2 to %3
        return tName & "|||" & tArtist & "|||" & tAlbum & "|||" & (tDur as text) & "|||" & (tPos as text) & "|||" & tPlaying & "|||" & %2
    on error
        return "STOPPED"
    end try
end tell)")
        .arg(applicationName(player), last, lastValue);
}

QString PlayerScripts::playPause(Player player)
{
    return command(player, QStringLiteral("playpause"));
}

QString PlayerScripts::nextTrack(Player player)
{
    return command(player, QStringLiteral("next track"));
}

QString PlayerScripts::previousTrack(Player player)
{
    return command(player, QStringLiteral("previous track"));
}

QString PlayerScripts::seek(Player player, double seconds)
{
    return command(player, QStringLiteral("set player position to ") + decimalText(seconds));
}

QString PlayerScripts::pauseIfPlaying(Player player)
{
    return QStringLiteral(R"(tell application "%1"
    try
        if player state is playing then pause
    end try
end tell)")
        .arg(applicationName(player));
}

QString PlayerScripts::loveMusic()
{
    return musicStatement(QStringLiteral(R"(set disliked of current track to false
        set loved of current track to true)"));
}

QString PlayerScripts::dislikeMusic()
{
    return musicStatement(QStringLiteral(R"(set loved of current track to false
        set disliked of current track to true)"));
}

QString PlayerScripts::reaction()
{
    return QStringLiteral(R"(tell application "Music"
    try
        set l to (loved of current track) as text
        set d to (disliked of current track) as text
        return l & "|" & d
    on error
        return "false|false"
    end try
end tell)");
}

QString PlayerScripts::spotifyKeystroke(const QString& key, const QStringList& modifiers)
{
    QString modifierClause;
    if (!modifiers.isEmpty()) {
        modifierClause = QStringLiteral(" using {%1}").arg(modifiers.join(QStringLiteral(", ")));
    }
    return QStringLiteral(R"(tell application "System Events"
    try
        set spotifyProc to first process whose bundle identifier is "com.spotify.client"
        tell spotifyProc to keystroke "%1"%2
    end try
end tell)")
        .arg(key, modifierClause);
}

QString PlayerScripts::loveSpotify()
{
    return spotifyKeystroke(QStringLiteral("s"), {QStringLiteral("command down")});
}

QString PlayerScripts::automationProbe(const QString& applicationName)
{
    return QStringLiteral("tell application \"%1\" to count tracks").arg(applicationName);
}

QString PlayerScripts::upNextListing(int limit)
{
    return QStringLiteral(R"(tell application "Music"
    try
        set cp to current playlist
        set ct to current track
        set ctName to name of ct
        set ctArtist to artist of ct

        set allNames to name of every track of cp
        set allArtists to artist of every track of cp
        set total to count of allNames

        set foundIdx to 0
        repeat with i from 1 to total
            if (item i of allNames is ctName) and (item i of allArtists is ctArtist) then
                set foundIdx to i
                exit repeat
            end if
        end repeat

        if foundIdx is 0 then return ""

        set startIdx to foundIdx + 1
        set endIdx to foundIdx + %1
        if endIdx > total then set endIdx to total
        if startIdx > total then return ""

        set output to ""
        repeat with i from startIdx to endIdx
            set output to output & i & "|||" & (item i of allNames) & "|||" & (item i of allArtists) & "###"
        end repeat
        return output
    on error
        return ""
    end try
end tell)")
        .arg(limit);
}

QString PlayerScripts::playPlaylistTrack(qint64 playlistIndex)
{
    return musicStatement(QStringLiteral("play track %1 of current playlist").arg(playlistIndex));
}

QString PlayerScripts::musicStatement(const QString& statement)
{
    return QStringLiteral(R"(tell application "Music"
    try
        %1
    end try
end tell)")
        .arg(statement);
}
