#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "audio/PlayerChoice.h"
#include "base/DebugLog.h"
#include "engine/NowPlayingService.h"
#include "linux/LinuxPlatform.h"
#include "linux/mpris/MprisPlayer.h"
#include "linux/mpris/PlayerRoster.h"
#include "linux/settings/PlistUserDefaults.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr double interval = 0.1; // seconds

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// "#rrggbb", or nothing where there is no cover.
QJsonValue middleColour(const QImage& cover)
{
    return cover.isNull() ? QJsonValue() : cover.pixelColor(cover.rect().center()).name();
}

void print(const NowPlayingService& engine, const PlayerRoster& players)
{
    const MprisPlayer* const player = players.player(PlayerRole::music);
    const QJsonObject state = {
        {QStringLiteral("time"), steadySeconds()},
        {QStringLiteral("activePlayer"), playerName(engine.activePlayer())},
        {QStringLiteral("title"), engine.title()},
        {QStringLiteral("artist"), engine.artist()},
        {QStringLiteral("album"), engine.album()},
        {QStringLiteral("isPlaying"), engine.isPlaying()},
        {QStringLiteral("elapsed"), engine.elapsed()},
        {QStringLiteral("duration"), engine.duration()},
        {QStringLiteral("cover"), middleColour(engine.shownArtwork())},
        // The reckoning behind "elapsed", which moves once a second. A script would do, but asks the player.
        {QStringLiteral("position"), player == nullptr ? QJsonValue() : player->position()},
        {QStringLiteral("player"), player == nullptr ? QString() : player->suffixes.join(u' ')},
    };
    std::puts(QJsonDocument(state).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

void obey(const QString& line, NowPlayingService& engine)
{
    const QStringList words = line.simplified().split(u' ');
    bool isNumber = false;
    const double seconds = words.value(1).toDouble(&isNumber);
    if (words.first() == QStringLiteral("toggle")) {
        engine.togglePlayPause();
    } else if (words.first() == QStringLiteral("next")) {
        engine.nextTrack();
    } else if (words.first() == QStringLiteral("previous")) {
        engine.previousTrack();
    } else if (words.first() == QStringLiteral("seek") && isNumber) {
        engine.seekTo(seconds);
    } else {
        std::fprintf(stderr, "not a command: %s\n", qUtf8Printable(line));
    }
}

/// Obeys the lines on the standard input until it ends.
void obeyInput(NowPlayingService& engine, QSocketNotifier& input)
{
    QObject::connect(
        &input, &QSocketNotifier::activated, &engine, [&engine, pending = QByteArray()]() mutable {
            QByteArray bytes(1024, '\0');
            const ssize_t count = read(STDIN_FILENO, bytes.data(), static_cast<size_t>(bytes.size()));
            if (count <= 0) {
                QCoreApplication::quit();
                return;
            }
            pending += bytes.first(count);
            for (qsizetype end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
                obey(QString::fromUtf8(pending.first(end)), engine);
                pending.remove(0, end + 1);
            }
        });
}

} // namespace

/// Runs the engine and prints ten times a second, as a line of JSON, what it says is playing. The lines
/// "toggle", "next", "previous" and "seek SECONDS" on the standard input command it. An argument names the
/// music player. For a desktop of its own only: it writes the settings file of the user.
int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    DebugLog::shared().setPath(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                               QStringLiteral("/now-playing.log"));
    PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
    defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                       QStringLiteral("http://127.0.0.1:1"));
    if (argc > 1) {
        defaults.setObject(QStringLiteral("pellar.linux.musicPlayer"), QString::fromLocal8Bit(argv[1]));
    }
    const PlayerChoice casting(defaults);
    LinuxPlatform linux(casting);
    AudioBridge audio(linux.ports().runLoop, defaults, nullptr);
    AudioSourceManager sources(defaults, linux.ports().notifications, audio);
    PowerModeManager power(defaults, linux.ports().power);
    ThemeManager theme(defaults);
    RecentlyPlayedManager recentlyPlayed(defaults, linux.ports().runLoop);
    NowPlayingService engine({.platform = linux.ports(),
                              .defaults = defaults,
                              .sources = sources,
                              .audio = audio,
                              .power = power,
                              .theme = theme,
                              .recentlyPlayed = recentlyPlayed});
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    obeyInput(engine, input);
    const auto& players = dynamic_cast<const PlayerRoster&>(linux.ports().mediaPlayers);
    const auto printing =
        linux.ports().runLoop.every(interval, &engine, [&engine, &players] { print(engine, players); });
    return QGuiApplication::exec();
}
