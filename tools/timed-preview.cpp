#include "audio/AudioBridge.h"
#include "audio/AudioSourceManager.h"
#include "audio/PlayerChoice.h"
#include "base/DebugLog.h"
#include "engine/NowPlayingService.h"
#include "linux/LinuxPlatform.h"
#include "linux/settings/PlistUserDefaults.h"
#include "lyrics/LyricsService.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"
#include "ui/QmlModules.h"
#include "ui/lyrics/LyricsModel.h"
#include "ui/preview/PellarPreviewPanel.h"

#include <QApplication>
#include <QFile>
#include <QQuickWindow>
#include <QScreen>
#include <QStandardPaths>

namespace {

constexpr QSize pillSize(185, 28);
constexpr int pillInset = 240; // of a fresh installation's, from the right

} // namespace

/// Shows the preview where the program would, with the lyrics of a TTML document, whose words have times. The
/// service that has such documents is switched off in the program. For a desktop of its own only: it writes
/// the settings file of the user.
int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    importQmlModules();
    const QApplication application(argc, argv);
    QFile document(argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (!document.open(QFile::ReadOnly)) {
        std::fputs("usage: timed-preview FILE.ttml\n", stderr);
        return 2;
    }
    const auto lines = AppleMusicLyricsService::parseTTML(QString::fromUtf8(document.readAll()));
    DebugLog::shared().setPath(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                               QStringLiteral("/timed-preview.log"));
    PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
    defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                       QStringLiteral("http://127.0.0.1:1"));
    const PlayerChoice casting(defaults);
    LinuxPlatform linux(casting);
    Platform& ports = linux.ports();
    AudioBridge audio(ports.runLoop, defaults, nullptr);
    AudioSourceManager sources(defaults, ports.notifications, audio);
    PowerModeManager power(defaults, ports.power);
    ThemeManager theme(defaults);
    RecentlyPlayedManager recentlyPlayed(defaults, ports.runLoop);
    NowPlayingService engine({.platform = ports,
                              .defaults = defaults,
                              .sources = sources,
                              .audio = audio,
                              .power = power,
                              .theme = theme,
                              .recentlyPlayed = recentlyPlayed});
    LyricsService lyrics(ports.runLoop, ports.notifications, defaults, ports.workspace,
                         [&](const LyricsRequest&, QObject* context, auto completion) {
                             ports.runLoop.after(0, context, [=] { completion(lines); });
                         });
    LyricsModel model({.service = engine, .lyrics = lyrics, .runLoop = ports.runLoop});
    FrameClock clock(ports.runLoop);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    PellarPreviewPanel panel(
        {.runLoop = ports.runLoop, .bar = ports.statusBar, .appearance = linux.appearance()},
        {.service = engine,
         .theme = theme,
         .power = power,
         .appearance = linux.appearance(),
         .runLoop = ports.runLoop,
         .clock = clock},
        model, QRect(QPoint(screen.right() + 1 - pillInset - pillSize.width(), screen.top()), pillSize));
    panel.onClose = [] { QCoreApplication::quit(); };
    panel.present();
    return QApplication::exec();
}
