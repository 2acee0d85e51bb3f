#include "prefs/GlobalShortcuts.h"

#include "base/DebugLog.h"
#include "base/NotificationCenter.h"
#include "platform/Platform.h"
#include "prefs/KeyboardShortcutManager.h"

namespace {

constexpr double retryInterval = 10; // seconds

QString command(PellarShortcut shortcut)
{
    switch (shortcut) {
    case PellarShortcut::playPause:
        return QStringLiteral("pellar --play-pause");
    case PellarShortcut::nextTrack:
        return QStringLiteral("pellar --next");
    case PellarShortcut::previousTrack:
        return QStringLiteral("pellar --previous");
    }
    Q_UNREACHABLE();
}

} // namespace

GlobalShortcuts::GlobalShortcuts(const Dependencies& dependencies) : _of(dependencies) {}

GlobalShortcuts& GlobalShortcuts::shared()
{
    Platform& platform = Platform::current();
    static auto* const instance = new GlobalShortcuts({.manager = KeyboardShortcutManager::shared(),
                                                       .hotKeys = platform.hotKeys,
                                                       .notifications = platform.notifications,
                                                       .runLoop = platform.runLoop});
    return *instance;
}

void GlobalShortcuts::setupGlobalShortcuts()
{
    // A hot key may be pressed while a command of the one before is still on its way.
    connect(&_of.hotKeys, &HotKeys::pressed, this, &GlobalShortcuts::handleHotKey, Qt::QueuedConnection);
    connect(&_of.hotKeys, &HotKeys::statesChanged, this, &GlobalShortcuts::readStates);
    connect(&_of.hotKeys, &HotKeys::keyboardChanged, this, [this] {
        if (!std::exchange(_isQueued, true)) { // one change of a layout comes as several
            _of.runLoop.after(0, this, [this] {
                _isQueued = false;
                applyShortcuts();
            });
        }
    });
    applyShortcuts();
    _of.notifications.observe(KeyboardShortcutManager::shortcutsChanged, this,
                              [this](const QVariantMap&) { applyShortcuts(); });
}

/// The chord of an action that shares it with none before it.
std::optional<ShortcutBinding> GlobalShortcuts::ownChord(PellarShortcut shortcut) const
{
    const auto chord = _of.manager.binding(shortcut);
    return chord && _of.manager.owner(*chord) == shortcut ? chord : std::nullopt;
}

void GlobalShortcuts::applyShortcuts()
{
    QList<HotKey> hotKeys;
    for (const auto& each : Choices<PellarShortcut>::all) {
        if (const auto chord = ownChord(each.value); chord && !_isRecording) {
            hotKeys.append({.id = carbonID(each.value),
                            .keyCode = chord->keyCode,
                            .modifiers = chord->modifiers,
                            .name = displayName(each.value),
                            .action = rawValue(each.value)});
        }
    }
    _of.hotKeys.apply(hotKeys);
    readStates();
}

void GlobalShortcuts::handleHotKey(quint32 id)
{
    for (const auto& each : Choices<PellarShortcut>::all) {
        if (carbonID(each.value) == id) {
            Q_EMIT pressed(each.value);
        }
    }
}

void GlobalShortcuts::readStates()
{
    if (_isRecording) {
        return;
    }
    States states;
    for (const auto& each : Choices<PellarShortcut>::all) {
        if (const auto chord = ownChord(each.value)) {
            states.insert(each.value, _of.hotKeys.state(carbonID(each.value)));
            if (states.value(each.value) == HotKeys::State::taken) {
                logTaken(each.value);
            } else {
                _logged.remove(chord->displayString());
            }
        }
    }
    const bool isAnyTaken = states.values().contains(HotKeys::State::taken);
    if (isAnyTaken && !_retryTimer) {
        _retryTimer = _of.runLoop.every(retryInterval, this, [this] { applyShortcuts(); });
    } else if (!isAnyTaken) {
        _retryTimer.reset();
    }
    _states = states;
}

void GlobalShortcuts::logTaken(PellarShortcut shortcut)
{
    const QString chord = _of.manager.binding(shortcut)->displayString();
    if (!_logged.contains(chord)) {
        _logged.insert(chord);
        dlog(QStringLiteral("Shortcuts: %1 for \"%2\" is taken by another program")
                 .arg(chord, displayName(shortcut)));
    }
}

QString GlobalShortcuts::note(PellarShortcut shortcut) const
{
    const auto chord = _of.manager.binding(shortcut);
    const auto owner = chord ? _of.manager.owner(*chord) : std::nullopt;
    if (owner && *owner != shortcut) {
        return tr("“%1” has this shortcut.").arg(displayName(*owner));
    }
    const States& states = _states;
    switch (states.value(shortcut, HotKeys::State::registered)) {
    case HotKeys::State::taken:
        return tr("Another program has this shortcut.");
    case HotKeys::State::missing:
        return tr("This keyboard has no such key.");
    case HotKeys::State::unavailable:
        return tr("Bind a key to “%1” in the keyboard settings of your desktop.").arg(command(shortcut));
    case HotKeys::State::pending:
    case HotKeys::State::registered:
        return {};
    }
    Q_UNREACHABLE();
}

void GlobalShortcuts::setRecording(bool isRecording)
{
    if (isRecording != _isRecording) {
        _isRecording = isRecording;
        applyShortcuts();
    }
}
