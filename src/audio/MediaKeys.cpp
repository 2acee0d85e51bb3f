#include "audio/MediaKeys.h"

#include "audio/MediaKeyTarget.h"
#include "base/DebugLog.h"
#include "base/RunLoop.h"
#include "platform/EventTaps.h"
#include "platform/Platform.h"
#include "platform/ScriptRunner.h"
#include "platform/SystemDefinedEvent.h"
#include "platform/Workspace.h"

#include <algorithm>

namespace {

constexpr quint32 keyDown = 0xA00;
constexpr quint32 keyUp = 0xB00;
constexpr double effectTime = 1; // seconds that a page has to react to a keystroke

MediaCommand mediaCommand(MediaKeys::Key key)
{
    switch (key) {
    case MediaKeys::Key::next:
        return MediaCommand::next;
    case MediaKeys::Key::previous:
        return MediaCommand::previous;
    case MediaKeys::Key::playPause:
        break;
    }
    return MediaCommand::playPause;
}

QString keyName(MediaKeys::Key key)
{
    switch (key) {
    case MediaKeys::Key::playPause:
        return QStringLiteral("playPause");
    case MediaKeys::Key::next:
        return QStringLiteral("next");
    case MediaKeys::Key::previous:
        return QStringLiteral("previous");
    }
    return {};
}

void trace(MediaKeys::Key key, const QString& message)
{
    dlog(QStringLiteral("MediaKeys: ") + keyName(key) + message);
}

/// The shortcut of web players for the key: the text to type, and the modifiers.
QString keystroke(MediaKeys::Key key)
{
    switch (key) {
    case MediaKeys::Key::playPause:
        return QStringLiteral("\" \"");
    case MediaKeys::Key::next:
        return QStringLiteral("\"N\" using {shift down}");
    case MediaKeys::Key::previous:
        return QStringLiteral("\"P\" using {shift down}");
    }
    return {};
}

QString keystrokeScript(qint64 processId, MediaKeys::Key key)
{
    return QStringLiteral("tell application \"System Events\"\n"
                          "    try\n"
                          "        set p to first process whose unix id is %1\n"
                          "        tell p to keystroke %2\n"
                          "        return \"OK\"\n"
                          "    on error errMsg\n"
                          "        return \"ERR: \" & errMsg\n"
                          "    end try\n"
                          "end tell")
        .arg(QString::number(processId), keystroke(key));
}

} // namespace

const QSet<QString>& MediaKeys::browserBundleIDs()
{
    static const QSet<QString> identifiers = {
        QStringLiteral("com.google.Chrome"),
        QStringLiteral("com.google.Chrome.canary"),
        QStringLiteral("company.thebrowser.Browser"),
        QStringLiteral("com.apple.Safari"),
        QStringLiteral("com.apple.SafariTechnologyPreview"),
        QStringLiteral("org.mozilla.firefox"),
        QStringLiteral("com.microsoft.edgemac"),
        QStringLiteral("com.brave.Browser"),
        QStringLiteral("com.brave.Browser.beta"),
        QStringLiteral("com.brave.Browser.nightly"),
        QStringLiteral("com.vivaldi.Vivaldi"),
        QStringLiteral("com.operasoftware.Opera"),
    };
    return identifiers;
}

MediaKeys::MediaKeys(Platform& platform) : _platform(platform) {}

void MediaKeys::send(Key key)
{
    const auto front = _platform.workspace.frontmostApplication();
    const QString bundleId = front ? front->bundleId.value_or(QString()) : QString();
    const bool isBrowser = browserBundleIDs().contains(bundleId);
    if (isBrowser && front->processId && typeInto(*front->processId, key)) {
        return;
    }
    trace(key,
          QStringLiteral(" → broadcast (front=%1)").arg(bundleId.isEmpty() ? QStringLiteral("?") : bundleId));
    broadcast(key);
}

bool MediaKeys::typeInto(qint64 browser, Key key)
{
    QList<MediaPlayer> pages = _platform.mediaPlayers.all();
    pages.removeIf([browser](const MediaPlayer& player) { return player.processId != browser; });
    const QString processId = QString::number(browser);
    const ScriptOutcome outcome = _platform.scripts.run(keystrokeScript(browser, key));
    if (outcome.reply == QStringLiteral("OK")) {
        trace(key, QStringLiteral(" → keystroke pid ") + processId);
        if (key == Key::playPause) {
            watchEffect(mediaKeyTarget(pages, _addressed));
        }
        return true;
    }
    trace(key, QStringLiteral(" → keystroke FAILED for pid %1: %2")
                   .arg(processId, outcome.reply.value_or(outcome.errorMessage)));
    return false;
}

/// Only play/pause has an effect that can be seen from outside in time.
void MediaKeys::watchEffect(const MediaPlayer* player)
{
    // Two presses within a second undo each other, whether or not the page reacts to keys.
    const bool isUndone = _typed && isWithoutEffect();
    _typed.reset();
    if (player == nullptr || isUndone) {
        return;
    }
    _typed = {.player = player->id, .wasPlaying = player->isPlaying};
    _platform.runLoop.after(effectTime, &_context, [this, key = ++_lastTyped] {
        if (key != _lastTyped || !_typed) {
            return;
        }
        if (isWithoutEffect()) {
            trace(Key::playPause, QStringLiteral(" → no effect, command to ") + _typed->player);
            _addressed = _typed->player;
            _platform.mediaPlayers.send(_typed->player, MediaCommand::playPause);
        }
        _typed.reset();
    });
}

bool MediaKeys::isWithoutEffect() const
{
    const auto players = _platform.mediaPlayers.all();
    return std::any_of(players.begin(), players.end(), [this](const MediaPlayer& player) {
        return player.id == _typed->player && player.isPlaying == _typed->wasPlaying;
    });
}

void MediaKeys::broadcast(Key key)
{
    if (!_platform.eventTaps.isTaken(static_cast<int>(key)) && command(key)) {
        return;
    }
    for (const quint32 direction : {keyDown, keyUp}) {
        const SystemDefinedEvent event{.modifierFlags = direction,
                                       .data1 =
                                           static_cast<qint32>(static_cast<quint32>(key) << 16U | direction),
                                       .data2 = -1};
        _platform.eventTaps.post(event, EventTaps::Tap::hid);
        _platform.eventTaps.post(event, EventTaps::Tap::session);
    }
}

/// False when no player could take it.
bool MediaKeys::command(Key key)
{
    const auto players = _platform.mediaPlayers.all();
    const MediaPlayer* const target = mediaKeyTarget(players, _addressed);
    if (target == nullptr) {
        return false;
    }
    _addressed = target->id;
    _platform.mediaPlayers.send(target->id, mediaCommand(key));
    return true;
}
