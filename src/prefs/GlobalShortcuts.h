#pragma once

#include "base/RunLoop.h"
#include "platform/HotKeys.h"
#include "prefs/ShortcutBinding.h"

#include <QMap>
#include <QProperty>
#include <QSet>

class KeyboardShortcutManager;
class NotificationCenter;

/// Has the bindings registered as hot keys, again whenever one of them or the keyboard changes, and says what
/// became of each. Of actions with the same chord the first one gets it. A chord that another program has is
/// tried again every ten seconds.
class GlobalShortcuts : public QObject
{
    Q_OBJECT

public:
    /// Everything outlives it.
    struct Dependencies {
        KeyboardShortcutManager& manager;
        HotKeys& hotKeys;
        NotificationCenter& notifications;
        RunLoop& runLoop;
    };

    explicit GlobalShortcuts(const Dependencies& dependencies);
    static GlobalShortcuts& shared();

    /// Registers the hot keys and begins to follow what changes.
    void setupGlobalShortcuts();

    /// One line for people on why the action's chord does nothing; empty when it works or there is none.
    QString note(PellarShortcut shortcut) const;

    /// While a chord is recorded nothing is registered, so that those in use can be pressed, too.
    void setRecording(bool isRecording);

Q_SIGNALS:
    void pressed(PellarShortcut shortcut);

private:
    /// Of the actions that are registered.
    using States = QMap<PellarShortcut, HotKeys::State>;

    std::optional<ShortcutBinding> ownChord(PellarShortcut shortcut) const;
    void applyShortcuts();
    void handleHotKey(quint32 id);
    void readStates();
    void logTaken(PellarShortcut shortcut);

    Dependencies _of;
    bool _isRecording = false;
    bool _isQueued = false;
    QProperty<States> _states;
    QSet<QString> _logged;                       ///< chords that another program has, by their text
    std::unique_ptr<RunLoop::Timer> _retryTimer; ///< while there are any
};
